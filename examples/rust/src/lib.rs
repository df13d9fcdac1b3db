//! Build poses of parts for 3D printing: a small safe wrapper around the C interface.

mod ffi;

use std::ffi::{c_void, CStr};
use std::panic::{catch_unwind, AssertUnwindSafe};
use std::ptr;

pub use ffi::{MeshSurface, Pose};

/// What the library said instead of an answer.
#[derive(Clone, Debug, PartialEq, Eq)]
pub enum Error {
    /// The progress callback returned false.
    Aborted,
    Failed { status: i32, text: String },
}

fn check(status: i32) -> Result<(), Error> {
    match status {
        ffi::OK => Ok(()),
        ffi::ABORTED => Err(Error::Aborted),
        // SAFETY: the text is the calling thread's own, and lives until its next call.
        _ => Err(Error::Failed {
            status,
            text: unsafe { CStr::from_ptr(ffi::tesk_last_error()) }.to_string_lossy().into_owned(),
        }),
    }
}

/// A mesh that the library keeps, freed when it is dropped.
pub struct Mesh {
    handle: *mut c_void,
}

// SAFETY: the library lets several threads use a handle at once; only dropping needs it alone.
unsafe impl Send for Mesh {}
unsafe impl Sync for Mesh {}

impl Drop for Mesh {
    fn drop(&mut self) {
        // SAFETY: made by tesk_mesh_create(), freed once.
        unsafe { ffi::tesk_free(self.handle) }
    }
}

/// The closure that a call reports to, and what it panicked with.
struct Listener<'a> {
    progress: &'a mut dyn FnMut(i32) -> bool,
    panic: Option<Box<dyn std::any::Any + Send>>,
}

/// No panic may enter the library: it is kept, and goes on after the call.
unsafe extern "C" fn report(percent: i32, user: *mut c_void) -> i32 {
    let listener = &mut *(user as *mut Listener);
    match catch_unwind(AssertUnwindSafe(|| (listener.progress)(percent))) {
        Ok(goes_on) => i32::from(!goes_on),
        Err(panic) => {
            listener.panic = Some(panic);
            1
        }
    }
}

impl Mesh {
    /// Copies a mesh: positions in millimetres, triangles counter-clockwise from outside.
    pub fn new(positions: &[[f32; 3]], triangles: &[[i32; 3]]) -> Result<Mesh, Error> {
        let arrays = ffi::MeshArrays {
            struct_size: std::mem::size_of::<ffi::MeshArrays>() as u32,
            position_type: 0,
            positions: positions.as_ptr().cast(),
            position_count: positions.len() as i64,
            position_stride: 0,
            triangles: triangles.as_ptr().cast(),
            triangle_count: triangles.len() as i64,
            triangle_stride: 0,
            placement: ptr::null(),
        };
        let mut handle = ptr::null_mut();
        // SAFETY: the arrays live during the call and have as many elements as they say.
        unsafe {
            check(ffi::tesk_check_abi(ffi::ABI_VERSION))?;
            check(ffi::tesk_mesh_create(&arrays, &mut handle))?;
        }
        Ok(Mesh { handle })
    }

    /// Checks the surface: holes, triangles that face the wrong way, volume and size.
    pub fn check(&self) -> Result<MeshSurface, Error> {
        let mut surface = MeshSurface {
            struct_size: std::mem::size_of::<MeshSurface>() as u32,
            ..Default::default()
        };
        // SAFETY: the struct has the size that it says.
        check(unsafe { ffi::tesk_mesh_check(self.handle, ptr::null(), &mut surface) })?;
        Ok(surface)
    }

    /// The poses of least cost, the best first. The closure is told percentages, and returns false to
    /// end the call.
    pub fn find_poses(&self, progress: &mut dyn FnMut(i32) -> bool) -> Result<Vec<Pose>, Error> {
        let mut listener = Listener { progress, panic: None };
        let call = ffi::Call {
            struct_size: std::mem::size_of::<ffi::Call>() as u32,
            threads: 0,
            progress: Some(report),
            user: (&mut listener as *mut Listener).cast(),
        };
        let mut poses = [Pose::default(); 12];
        poses[0].struct_size = std::mem::size_of::<Pose>() as u32;
        let mut summary = ffi::PoseSummary {
            struct_size: std::mem::size_of::<ffi::PoseSummary>() as u32,
            ..Default::default()
        };
        // SAFETY: everything lives during the call, and there is room for 12 poses. The library calls
        // back on this thread only.
        let status = unsafe {
            ffi::tesk_find_poses(
                self.handle,
                ptr::null(),
                &call,
                poses.as_mut_ptr(),
                poses.len() as i32,
                ptr::null_mut(),
                &mut summary,
            )
        };
        if let Some(panic) = listener.panic {
            std::panic::resume_unwind(panic);
        }
        check(status)?;
        Ok(poses[..summary.pose_count as usize].to_vec())
    }
}
