use teskorient::{Error, Mesh};

/// A column with an arm at its upper end, as one closed mesh: an L that stands on its short leg.
fn bracket() -> Mesh {
    let profile = [[0.0, 0.0], [15.0, 0.0], [15.0, 4.0], [4.0, 4.0], [4.0, 60.0], [0.0, 60.0]];
    let mut positions = Vec::new();
    for y in [0.0, 20.0] {
        positions.extend(profile.iter().map(|[x, z]| [*x, y, *z]));
    }
    let mut triangles: Vec<[i32; 3]> = vec![[0, 1, 2], [0, 2, 3], [0, 3, 4], [0, 4, 5]];
    for i in 0..4 {
        let [a, b, c] = triangles[i];
        triangles.push([c + 6, b + 6, a + 6]);
    }
    for i in 0..6 {
        let next = (i + 1) % 6;
        triangles.push([i, i + 6, next]);
        triangles.push([next, i + 6, next + 6]);
    }
    Mesh::new(&positions, &triangles).unwrap()
}

#[test]
fn a_sound_mesh_is_found_sound() {
    let surface = bracket().check().unwrap();
    assert_eq!(surface.open_edges + surface.non_manifold_edges + surface.inconsistent_edges, 0);
    assert_eq!(surface.degenerate_triangles, 0);
    assert_eq!(surface.volume, 20.0 * (15.0 * 4.0 + 4.0 * 56.0));
    assert_eq!(surface.size, [15.0, 20.0, 60.0]);
}

#[test]
fn holes_are_counted() {
    let corners = [[0.0, 0.0, 0.0], [1.0, 0.0, 0.0], [0.0, 1.0, 0.0]];
    assert_eq!(Mesh::new(&corners, &[[0, 1, 2]]).unwrap().check().unwrap().open_edges, 3);
}

#[test]
fn the_best_pose_comes_first() {
    let mut reports = Vec::new();
    let poses = bracket()
        .find_poses(&mut |percent| {
            reports.push(percent);
            true
        })
        .unwrap();
    assert!(poses.len() > 1);
    assert_eq!(poses[0].height, 15.0);
    assert_eq!(poses[0].stands, 1);
    assert!(reports.windows(2).all(|pair| pair[0] <= pair[1]));
    assert_eq!(reports.last(), Some(&100));
}

#[test]
fn a_closure_can_end_the_call() {
    let ended = bracket().find_poses(&mut |percent| percent < 40);
    assert_eq!(ended.unwrap_err(), Error::Aborted);
}

#[test]
fn a_panic_goes_on_after_the_call() {
    let result = std::panic::catch_unwind(|| bracket().find_poses(&mut |_| panic!("enough")).is_ok());
    assert_eq!(*result.unwrap_err().downcast::<&str>().unwrap(), "enough");
}

#[test]
fn a_bad_mesh_is_an_error() {
    match Mesh::new(&[[0.0; 3]; 3], &[[0, 1, 3]]) {
        Err(Error::Failed { text, .. }) => assert!(text.contains("names vertex 3 of 3"), "{text}"),
        _ => panic!("no error"),
    }
}

#[test]
fn threads_share_a_mesh() {
    let mesh = bracket();
    let expected = mesh.find_poses(&mut |_| true).unwrap()[0].rotation;
    std::thread::scope(|scope| {
        for _ in 0..4 {
            scope.spawn(|| assert_eq!(mesh.find_poses(&mut |_| true).unwrap()[0].rotation, expected));
        }
    });
}
