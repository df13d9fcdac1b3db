// A small host in C#: asks how a bracket should be built, and finds the smallest box around it.
using System;
using System.Runtime.InteropServices;
using Tesk;

internal static unsafe class Program
{
    private static readonly float[] Positions = {
        0, 0, 0,  15, 0, 0,  15, 0, 4,  4, 0, 4,  4, 0, 60,  0, 0, 60,
        0, 20, 0, 15, 20, 0, 15, 20, 4, 4, 20, 4, 4, 20, 60, 0, 20, 60 };
    private static readonly int[] Triangles = {
        0, 1, 2,  0, 2, 3, 0, 3, 4, 0, 4, 5,  8, 7, 6,  9, 8, 6,  10, 9, 6, 11, 10, 6, 0, 6, 1,   1, 6, 7,
        1, 7, 2,  2, 7, 8, 2, 8, 3, 3, 8, 9,  3, 9, 4,  4, 9, 10, 4, 10, 5, 5, 10, 11, 5, 11, 0,  0, 11, 6 };

    private static void Check(Status status)
    {
        if (status == Status.Ok) return;
        throw new InvalidOperationException(Marshal.PtrToStringUTF8(Native.tesk_last_error()));
    }

    private static void PrintSurface(IntPtr mesh)
    {
        var surface = new MeshSurface { StructSize = (uint)sizeof(MeshSurface) };
        Check(Native.tesk_mesh_check(mesh, IntPtr.Zero, ref surface));
        Console.WriteLine($"open edges: {surface.OpenEdges}, volume: {surface.Volume}");
    }

    private static void PrintPoses(IntPtr mesh)
    {
        var goal = new Goal { StructSize = (uint)sizeof(Goal) };
        Check(Native.tesk_goal_init(ref goal, 0));
        Progress progress = (percent, user) => 0;
        var call = new Call { StructSize = (uint)sizeof(Call),
                              Progress = Marshal.GetFunctionPointerForDelegate(progress) };
        var summary = new PoseSummary { StructSize = (uint)sizeof(PoseSummary) };
        Pose* poses = stackalloc Pose[12];
        poses[0].StructSize = (uint)sizeof(Pose);
        Check(Native.tesk_find_poses(mesh, ref goal, ref call, poses, 12, null, ref summary));
        GC.KeepAlive(progress);
        for (int i = 0; i < 3 && i < summary.PoseCount; ++i)
        {
            Console.WriteLine($"height {poses[i].Height}, support {poses[i].SupportVolume}");
        }
    }

    private static void PrintSmallestBox(float* positions)
    {
        var points = new Points { StructSize = (uint)sizeof(Points), Data = (IntPtr)positions, Count = 12 };
        var box = new Box { StructSize = (uint)sizeof(Box) };
        Check(Native.tesk_smallest_box(ref points, 0, null, IntPtr.Zero, ref box));
        float* half = box.HalfExtents;
        Console.WriteLine($"smallest box: {2 * half[0]} x {2 * half[1]} x {2 * half[2]}");
    }

    public static void Main()
    {
        Check(Native.tesk_check_abi(Native.AbiVersion));
        fixed (float* positions = Positions)
        fixed (int* triangles = Triangles)
        {
            var arrays = new MeshArrays { StructSize = (uint)sizeof(MeshArrays), Positions = (IntPtr)positions,
                                          PositionCount = 12, Triangles = (IntPtr)triangles, TriangleCount = 20 };
            Check(Native.tesk_mesh_create(ref arrays, out IntPtr mesh));
            try
            {
                PrintSurface(mesh);
                PrintPoses(mesh);
                PrintSmallestBox(positions);
            }
            finally
            {
                Native.tesk_free(mesh);
            }
        }
    }
}
