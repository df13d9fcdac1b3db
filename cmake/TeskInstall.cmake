# Installs the libraries, their headers and a package file, so that a host writes
# find_package(TeskSDKTriangleOrient) and links Tesk::TeskSDKTriangleOrient.
include(CMakePackageConfigHelpers)

set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/TeskSDKTriangleOrient)
set(headerFolder ${CMAKE_INSTALL_INCLUDEDIR}/TeskSDK)

install(TARGETS TeskDataBasic TeskDebug TeskMeshData TeskSDKCommonTools TeskSDKTriangleOrient
        EXPORT TeskTargets)
install(EXPORT TeskTargets NAMESPACE Tesk:: DESTINATION ${packageFolder})

install(DIRECTORY include/ DESTINATION ${headerFolder} FILES_MATCHING PATTERN "*.h")
foreach(library IN ITEMS TeskDataBasic TeskDebug TeskMeshData TeskSDKCommonTools)
    install(DIRECTORY platform/${library}/include/ DESTINATION ${headerFolder}
            FILES_MATCHING PATTERN "*.h")
endforeach()

configure_package_config_file(
    cmake/TeskSDKTriangleOrientConfig.cmake.in TeskSDKTriangleOrientConfig.cmake
    INSTALL_DESTINATION ${packageFolder}
    NO_SET_AND_CHECK_MACRO)
# Before 1.0 a new minor version may change the interface.
write_basic_package_version_file(TeskSDKTriangleOrientConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/TeskSDKTriangleOrientConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/TeskSDKTriangleOrientConfigVersion.cmake
        DESTINATION ${packageFolder})
