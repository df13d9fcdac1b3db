# Puts what a page is made of into a folder: cmake -DFOLDER=... and the arguments of PageAssets.cmake.
include(${CMAKE_CURRENT_LIST_DIR}/PageAssets.cmake)

function(pack name file content)
    expect_embeddable(${name} "${content}")
    file(WRITE ${FOLDER}/${file} "${content}")
endfunction()

pack(Template page.html "${template}")
pack(Style page.css "${style}")
pack(Three three.js "${three}")
pack(Script page.js "${script}")
pack(Licence licence.txt "${licence}")
pack(Revision revision.txt "${revision}")
