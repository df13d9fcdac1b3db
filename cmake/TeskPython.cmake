# What the Python package holds beside its own files: the library, and what a page with 3D pictures is made of.
# Component "python"; paths are those in a wheel.

# Wheels hold no links, so the library is installed under its plain name, whatever it is a version of.
set(TESK_PYTHON_LIBRARY ${CMAKE_SHARED_LIBRARY_PREFIX}teskorient${CMAKE_SHARED_LIBRARY_SUFFIX})
install(PROGRAMS $<TARGET_FILE:teskorient> DESTINATION teskorient COMPONENT python
        RENAME ${TESK_PYTHON_LIBRARY})

# Without three.js there is no page: the package then shows a table instead.
include(TeskPageFiles)
add_custom_target(tesk_page_files)
if(TESK_THREE_JS AND TESK_THREE_LICENCE)
    set(pageFolder ${PROJECT_BINARY_DIR}/page)
    add_custom_command(
        OUTPUT ${pageFolder}/revision.txt
        COMMAND ${CMAKE_COMMAND} -DFOLDER=${pageFolder} ${TESK_PAGE_ARGUMENTS} -P
                ${PROJECT_SOURCE_DIR}/cmake/PackPageFiles.cmake
        DEPENDS ${TESK_PAGE_FILES} ${PROJECT_SOURCE_DIR}/cmake/PackPageFiles.cmake
        VERBATIM)
    add_custom_target(tesk_pack_page_files DEPENDS ${pageFolder}/revision.txt)
    add_dependencies(tesk_page_files tesk_pack_page_files)
    install(DIRECTORY ${pageFolder} DESTINATION teskorient COMPONENT python)
else()
    message(STATUS "three.js was not found: notebooks show tables, not pages")
endif()

# Licence texts of the libraries that a wheel contains: scripts/build_wheels collects them.
set(TESK_LICENCES "" CACHE PATH "Folder of third-party licence texts to install")
if(TESK_LICENCES)
    install(DIRECTORY ${TESK_LICENCES}/ DESTINATION teskorient/licences COMPONENT python)
endif()
