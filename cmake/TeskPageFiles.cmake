# The files that a page with 3D pictures is made of: TESK_PAGE_FILES, and TESK_PAGE_ARGUMENTS that tell them to
# PageAssets.cmake. The 3D library is a script, the same on every platform; TESK_THREE_JS is where it is.
set(webFolder ${PROJECT_SOURCE_DIR}/web)
set(webScripts data.js geometry.js shaders.js palette.js painter.js steering.js table.js section.js
               page.js)
find_file(TESK_THREE_JS three.min.js PATHS /usr/share/javascript/three NO_DEFAULT_PATH
                                           NO_CMAKE_FIND_ROOT_PATH)
find_file(TESK_THREE_LICENCE copyright PATHS /usr/share/doc/libjs-three NO_DEFAULT_PATH
                                             NO_CMAKE_FIND_ROOT_PATH)
mark_as_advanced(TESK_THREE_JS TESK_THREE_LICENCE)
list(TRANSFORM webScripts PREPEND ${webFolder}/ OUTPUT_VARIABLE webFiles)
string(REPLACE ";" "," webScriptList "${webScripts}")
set(TESK_PAGE_FILES ${webFiles} ${webFolder}/page.css ${webFolder}/page.html ${TESK_THREE_JS}
                    ${TESK_THREE_LICENCE} ${PROJECT_SOURCE_DIR}/cmake/PageAssets.cmake)
set(TESK_PAGE_ARGUMENTS -DWEB=${webFolder} -DSCRIPTS=${webScriptList} -DTHREE=${TESK_THREE_JS}
                        -DLICENCE=${TESK_THREE_LICENCE})
