//! Links libteskorient from the folder that TESKORIENT_LIB_DIR names, or from where the linker looks.

fn main() {
    println!("cargo:rerun-if-env-changed=TESKORIENT_LIB_DIR");
    if let Ok(folder) = std::env::var("TESKORIENT_LIB_DIR") {
        println!("cargo:rustc-link-search=native={folder}");
        println!("cargo:rustc-link-arg=-Wl,-rpath,{folder}");
    }
    println!("cargo:rustc-link-lib=dylib=teskorient");
}
