#include "page/OrientPage.h"

#include "page/Page.h"
#include "part/PathText.h"
#include "picture/Picture.h"

namespace App {

std::string posesPicture(const OrientOptions& options, const OrientResult& result) {
    const OptimizeOrient::BuildPoses& found = result.poses;
    const bool isSvg = displayName(options.picture.extension()) == ".svg";
    return pictureOf(result.part.mesh, found.asItLies,
                     found.poses[static_cast<std::size_t>(options.rank - 1)], options.rank,
                     options.poseGoal.overhangAngleDeg,
                     isSvg ? PictureFormat::kSvg : PictureFormat::kPng);
}

std::string posesPage(const OrientOptions& options, const OrientResult& result) {
    const std::string name = displayName(options.part.filename());
    Json found = posesJson(options, result);
    PageInput input{name, found["settings"], Json::array(), {}};
    input.objects.push_back(
        {name, "", 1, reasonFor(options, result.poses), std::move(found), &result.part.mesh});
    return pageOf(input);
}

}  // namespace App
