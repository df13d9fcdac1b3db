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

if(TESK_BUILD_C)
    include(TeskInstallC)
endif()

set(dataFolder ${CMAKE_INSTALL_DATADIR}/TeskSDKTriangleOrient)
if(TESK_BUILD_APPS)
    install(TARGETS example_host RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(DIRECTORY examples/host/ DESTINATION ${dataFolder}/example)
    install(DIRECTORY examples/c DESTINATION ${dataFolder})
endif()
install(FILES README.md LICENSE THIRD_PARTY.md CHANGELOG.md SECURITY.md CONTRIBUTING.md
        DESTINATION ${dataFolder})
install(DIRECTORY docs DESTINATION ${dataFolder}
        FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN "*.png" PATTERN "*.txt")
# Licence texts of the libraries that the packages contain or link to: scripts/package collects them.
set(TESK_LICENCES "" CACHE PATH "Folder of third-party licence texts to install")
if(TESK_LICENCES)
    install(DIRECTORY ${TESK_LICENCES}/ DESTINATION ${dataFolder}/licences)
endif()

# On Windows the compiler's runtime libraries go along, beside the programs and DLLs that need them.
if(MINGW)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-libgcc-file-name OUTPUT_VARIABLE libgcc
                    OUTPUT_STRIP_TRAILING_WHITESPACE)
    get_filename_component(runtimeFolder ${libgcc} DIRECTORY)
    foreach(library IN ITEMS libstdc++-6 libgcc_s_seh-1 libgomp-1 libwinpthread-1)
        find_file(TESK_RUNTIME_${library} ${library}.dll REQUIRED NO_CMAKE_FIND_ROOT_PATH
                  PATHS ${runtimeFolder} /usr/x86_64-w64-mingw32/lib NO_DEFAULT_PATH)
        install(PROGRAMS ${TESK_RUNTIME_${library}} DESTINATION ${CMAKE_INSTALL_BINDIR})
        set(installed "\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/${library}.dll")
        install(CODE "if(CMAKE_INSTALL_DO_STRIP)
    execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-unneeded \"${installed}\")
endif()")
    endforeach()
endif()

set(CPACK_PACKAGE_NAME tesk-sdk-triangle-orient)
set(CPACK_PACKAGE_VENDOR "TeskSDKTriangleOrient")
set(CPACK_PACKAGE_CONTACT "TeskSDKTriangleOrient <engineers@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "Build orientations and smallest bounding boxes of parts for 3D printing")
set(CPACK_PACKAGE_FILE_NAME
    ${CPACK_PACKAGE_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/dist)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
else()
    set(CPACK_GENERATOR TGZ DEB)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    # Its own libraries are in it.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src
                                                    ${PROJECT_BINARY_DIR}/platform)
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS OFF)
    set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6")
endif()
include(CPack)
