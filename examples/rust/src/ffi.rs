//! The part of teskorient.h that the wrapper uses.

use std::ffi::{c_char, c_void};

pub const OK: i32 = 0;
pub const ABORTED: i32 = 1;
pub const ABI_VERSION: i32 = 1;

pub type Progress = unsafe extern "C" fn(percent: i32, user: *mut c_void) -> i32;

#[repr(C)]
pub struct Call {
    pub struct_size: u32,
    pub threads: i32,
    pub progress: Option<Progress>,
    pub user: *mut c_void,
}

#[repr(C)]
pub struct MeshArrays {
    pub struct_size: u32,
    pub position_type: i32,
    pub positions: *const c_void,
    pub position_count: i64,
    pub position_stride: i64,
    pub triangles: *const c_void,
    pub triangle_count: i64,
    pub triangle_stride: i64,
    pub placement: *const f32,
}

/// What may make results doubtful: a sound mesh has none of the three kinds of edges.
#[repr(C)]
#[derive(Clone, Copy, Debug, Default)]
pub struct MeshSurface {
    pub struct_size: u32,
    pub open_edges: i32,
    pub non_manifold_edges: i32,
    pub inconsistent_edges: i32,
    pub degenerate_triangles: i64,
    pub volume: f64,
    pub size: [f64; 3],
}

#[repr(C)]
#[derive(Clone, Copy, Debug, Default)]
pub struct Pose {
    pub struct_size: u32,
    pub rotation: [f32; 16],
    pub height: f32,
    pub footprint: [f32; 2],
    pub support_volume: f32,
    pub overhang_area: f32,
    pub overhang_area_on_part: f32,
    pub contact_area: f32,
    pub contact_islands: i32,
    pub tilt_margin_deg: f32,
    pub lies_flat: i32,
    pub stands: i32,
    pub support_volume_cost: f32,
    pub overhang_area_cost: f32,
    pub height_cost: f32,
}

#[repr(C)]
#[derive(Default)]
pub struct PoseSummary {
    pub struct_size: u32,
    pub pose_count: i32,
    pub none_stands: i32,
    pub kept_off: i32,
    pub too_large: i32,
    pub little_contact: i32,
    pub cannot_stand: i32,
    pub nearest_misfit: [f32; 3],
}

extern "C" {
    pub fn tesk_check_abi(abi_version: i32) -> i32;
    pub fn tesk_last_error() -> *const c_char;
    pub fn tesk_free(handle: *mut c_void);
    pub fn tesk_mesh_create(arrays: *const MeshArrays, mesh: *mut *mut c_void) -> i32;
    pub fn tesk_mesh_check(
        mesh: *const c_void,
        call: *const Call,
        surface: *mut MeshSurface,
    ) -> i32;
    pub fn tesk_find_poses(
        mesh: *const c_void,
        goal: *const c_void,
        call: *const Call,
        poses: *mut Pose,
        capacity: i32,
        as_it_lies: *mut Pose,
        summary: *mut PoseSummary,
    ) -> i32;
}
