#include "page/OrientPage.h"

#include "page/Page.h"
#include "part/FileBytes.h"

namespace App {

std::string posesPage(const OrientOptions& options, const OrientResult& result) {
    const std::string name = displayName(options.part.filename());
    Json found = posesJson(options, result);
    PageInput input{name, found["settings"], {}};
    input.objects.push_back(
        {name, "", 1, reasonFor(options, result.poses), std::move(found), &result.part.mesh});
    return pageOf(input);
}

}  // namespace App
