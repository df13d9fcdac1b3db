// The C interface in C#: the structs and functions that the example uses. scripts/check_csharp compares the layouts
// with those of the library.
using System;
using System.Runtime.InteropServices;

namespace Tesk
{
    public enum Status : int
    {
        Ok = 0,
        Aborted = 1,
        InvalidArgument = 2,
        OutOfMemory = 3,
        FileError = 4,
        NoResult = 5,
        CallbackFailed = 6,
        InternalError = 7
    }

    /// <summary>Told whole percentages; nonzero ends the call. No exception may leave it.</summary>
    [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
    public delegate int Progress(int percent, IntPtr user);

    // tesk_call
    [StructLayout(LayoutKind.Sequential)]
    public struct Call
    {
        public uint StructSize;
        public int Threads;
        public IntPtr Progress;
        public IntPtr User;
    }

    // tesk_mesh_arrays
    [StructLayout(LayoutKind.Sequential)]
    public struct MeshArrays
    {
        public uint StructSize;
        public int PositionType;
        public IntPtr Positions;
        public long PositionCount;
        public long PositionStride;
        public IntPtr Triangles;
        public long TriangleCount;
        public long TriangleStride;
        public IntPtr Placement;
    }

    // tesk_mesh_surface
    [StructLayout(LayoutKind.Sequential)]
    public unsafe struct MeshSurface
    {
        public uint StructSize;
        public int OpenEdges;
        public int NonManifoldEdges;
        public int InconsistentEdges;
        public long DegenerateTriangles;
        public double Volume;
        public fixed double Size[3];
    }

    // tesk_goal
    [StructLayout(LayoutKind.Sequential)]
    public unsafe struct Goal
    {
        public uint StructSize;
        public float OverhangAngleDeg;
        public float SupportVolumeCost;
        public float OverhangAreaCost;
        public float HeightCost;
        public fixed float BuildVolume[3];
        public float LeastContactArea;
        public int KeepOffCount;
        public IntPtr KeepOff;
    }

    // tesk_pose
    [StructLayout(LayoutKind.Sequential)]
    public unsafe struct Pose
    {
        public uint StructSize;
        public fixed float Rotation[16];
        public float Height;
        public fixed float Footprint[2];
        public float SupportVolume;
        public float OverhangArea;
        public float OverhangAreaOnPart;
        public float ContactArea;
        public int ContactIslands;
        public float TiltMarginDeg;
        public int LiesFlat;
        public int Stands;
        public float SupportVolumeCost;
        public float OverhangAreaCost;
        public float HeightCost;
    }

    // tesk_pose_summary
    [StructLayout(LayoutKind.Sequential)]
    public unsafe struct PoseSummary
    {
        public uint StructSize;
        public int PoseCount;
        public int NoneStands;
        public int KeptOff;
        public int TooLarge;
        public int LittleContact;
        public int CannotStand;
        public fixed float NearestMisfit[3];
    }

    // tesk_points
    [StructLayout(LayoutKind.Sequential)]
    public struct Points
    {
        public uint StructSize;
        public int Type;
        public IntPtr Data;
        public long Count;
        public long Stride;
    }

    // tesk_box
    [StructLayout(LayoutKind.Sequential)]
    public unsafe struct Box
    {
        public uint StructSize;
        public fixed float Center[3];
        public fixed float Axes[9];
        public fixed float HalfExtents[3];
    }

    public static unsafe class Native
    {
        public const int AbiVersion = 1;
        private const string Library = "teskorient";

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern Status tesk_check_abi(int abiVersion);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern IntPtr tesk_last_error();

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern void tesk_free(IntPtr handle);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern Status tesk_mesh_create(ref MeshArrays arrays, out IntPtr mesh);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern Status tesk_mesh_check(IntPtr mesh, IntPtr call, ref MeshSurface surface);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern Status tesk_goal_init(ref Goal goal, int which);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern Status tesk_find_poses(IntPtr mesh, ref Goal goal, ref Call call, Pose* poses, int capacity,
                                                    Pose* asItLies, ref PoseSummary summary);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern Status tesk_smallest_box(ref Points points, int criterion, float* axis, IntPtr call,
                                                      ref Box box);
    }
}
