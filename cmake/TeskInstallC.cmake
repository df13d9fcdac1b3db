# Installs the C interface: the library, its import libraries, and package files of its own, which ask for no
# C++ compiler and no other library.
include(CMakePackageConfigHelpers)

install(TARGETS teskorient)

set(teskorientFolder ${CMAKE_INSTALL_LIBDIR})
get_target_property(teskorientAbi teskorient SOVERSION)
if(WIN32)
    set(teskorientLibrary ${CMAKE_INSTALL_BINDIR}/teskorient.dll)
else()
    set(teskorientLibrary ${CMAKE_INSTALL_LIBDIR}/libteskorient.so.${PROJECT_VERSION})
endif()
set(teskorientPackage ${CMAKE_INSTALL_LIBDIR}/cmake/teskorient)
configure_package_config_file(cmake/teskorientConfig.cmake.in teskorientConfig.cmake
                              INSTALL_DESTINATION ${teskorientPackage} NO_SET_AND_CHECK_MACRO
                                                                       NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(teskorientConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/teskorientConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/teskorientConfigVersion.cmake
        DESTINATION ${teskorientPackage})

file(RELATIVE_PATH prefixFromPc /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" prefixFromPc ${prefixFromPc})
configure_file(cmake/teskorient.pc.in teskorient.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/teskorient.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# MSVC's linker wants an import library in its own form, made from the list of functions in the header.
if(MINGW)
    find_program(TESK_DLLTOOL NAMES llvm-dlltool llvm-dlltool-19 llvm-dlltool-14 REQUIRED)
    mark_as_advanced(TESK_DLLTOOL)
    file(READ include/teskorient.h header)
    string(REGEX MATCHALL "TESK_CALL tesk_[a-z_]+\\(" functions "${header}")
    list(TRANSFORM functions REPLACE "TESK_CALL (.*)\\(" "    \\1")
    list(JOIN functions "\n" functions)
    set(definition ${CMAKE_CURRENT_BINARY_DIR}/teskorient.def)
    set(importLibrary ${CMAKE_CURRENT_BINARY_DIR}/teskorient.lib)
    file(CONFIGURE OUTPUT ${definition} CONTENT "LIBRARY teskorient.dll\nEXPORTS\n${functions}\n" @ONLY)
    add_custom_command(OUTPUT ${importLibrary} DEPENDS ${definition} VERBATIM
                       COMMAND ${TESK_DLLTOOL} -m i386:x86-64 -d ${definition} -l ${importLibrary})
    add_custom_target(teskorient_import_library ALL DEPENDS ${importLibrary})
    install(FILES ${importLibrary} ${definition} DESTINATION ${CMAKE_INSTALL_LIBDIR})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS include/teskorient.h)
endif()
