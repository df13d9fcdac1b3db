# tesk_room(FOLDER HEADERS ... [SOURCES ...] [NEEDS FOLDER...] [LIBRARIES ...] [PRIVATE_LIBRARIES ...])
#
# A folder of src, compiled as objects of its own. What its sources can include is what they are
# given here: its own headers, those of the folders that it needs, and those of the libraries. For
# that, each folder's include root lies in the build tree and holds nothing but one header for each
# of the folder's, which leads there. An include of a folder that is not needed does not compile.
# Includes are written from src: "minbox/hull/SearchHull.h".
function(tesk_room folder)
    cmake_parse_arguments(PARSE_ARGV 1 room "" "" "HEADERS;SOURCES;NEEDS;LIBRARIES;PRIVATE_LIBRARIES")
    string(REPLACE "/" "_" name room_${folder})
    set(root ${PROJECT_BINARY_DIR}/rooms/${name})
    file(MAKE_DIRECTORY ${root})
    foreach(header IN LISTS room_HEADERS)
        file(CONFIGURE OUTPUT ${root}/${folder}/${header} @ONLY
             CONTENT "#include \"${CMAKE_CURRENT_SOURCE_DIR}/${folder}/${header}\"\n")
    endforeach()
    list(TRANSFORM room_NEEDS REPLACE "/" "_")
    list(TRANSFORM room_NEEDS PREPEND room_)
    if(NOT room_SOURCES)
        add_library(${name} INTERFACE)
        target_include_directories(${name} INTERFACE ${root})
        target_link_libraries(${name} INTERFACE ${room_NEEDS} ${room_LIBRARIES})
        return()
    endif()
    list(TRANSFORM room_SOURCES PREPEND ${folder}/)
    add_library(${name} OBJECT ${room_SOURCES})
    target_include_directories(${name} PUBLIC ${root} ${PROJECT_SOURCE_DIR}/include)
    target_link_libraries(${name} PUBLIC ${room_NEEDS} ${room_LIBRARIES}
                          PRIVATE tesk_flags ${room_PRIVATE_LIBRARIES})
    target_compile_definitions(${name} PRIVATE TESK_ORIENT_BUILDING)
    if(NOT MSVC)
        # A silent step from float to double, or back, would change results.
        target_compile_options(${name} PRIVATE -Wdouble-promotion -Wfloat-conversion)
    endif()
    set_property(GLOBAL APPEND PROPERTY TESK_ROOMS ${name})
endfunction()
