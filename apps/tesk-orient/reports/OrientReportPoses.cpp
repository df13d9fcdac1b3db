#include <fmt/format.h>

#include <cmath>
#include <string_view>

#include "poses/Turn.h"
#include "reports/OrientReport.h"
#include "reports/ReportText.h"

namespace App {

namespace {

using OptimizeOrient::BuildPose;
using OptimizeOrient::BuildPoses;

/// Rounded to two digits: the prediction is good for no more.
double toTwoDigits(double value) {
    if (!(value >= 1.0)) return 0.0;
    const double unit = std::pow(10.0, std::floor(std::log10(value)) - 1.0);
    return std::round(value / unit) * unit;
}

std::string filamentText(float millimetres) {
    const double about = toTwoDigits(static_cast<double>(millimetres));
    if (about >= 9950.0) return fmt::format("{:.0f} m", about / 1000.0);
    return about >= 995.0 ? fmt::format("{:.1f} m", about / 1000.0)
                          : fmt::format("{:.0f} mm", about);
}

/// Whole numbers with a comma between thousands.
std::string wholeText(float value) {
    const std::string digits = fmt::format("{:.0f}", static_cast<double>(value));
    std::string grouped;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) grouped.push_back(',');
        grouped.push_back(digits[i]);
    }
    return grouped;
}

UVector3<float> upIn(const BuildPose& pose) {
    return {pose.rotation.at(0, 2), pose.rotation.at(1, 2), pose.rotation.at(2, 2)};
}

/// Which side of the part, as the file has it, lies down.
std::string sideOf(const BuildPose& pose) {
    if (pose.rotation.isIdenticalMatrix()) return "stays as it lies";
    constexpr float kSquare = 0.9998f;  // 1.1°
    const UVector3<float> up = upIn(pose);
    if (up.z > kSquare) return "stays on its face, turned about Z";
    if (up.z < -kSquare) return "lies upside down";
    if (up.y < -kSquare) return "lies on its back";
    if (up.y > kSquare) return "lies on its front";
    if (up.x < -kSquare) return "lies on its right side";
    if (up.x > kSquare) return "lies on its left side";
    return fmt::format("lies on the side that looks along {}", textOf(UVector3<float>() - up));
}

std::string heightText(float difference) {
    const double whole = std::round(static_cast<double>(std::fabs(difference)));
    if (whole == 0.0) return "as high";
    return fmt::format("{:.0f} mm {}", whole, difference > 0.0f ? "higher" : "lower");
}

std::string supportText(const BuildPose& pose, const BuildPose& asItLies) {
    const std::string own = filamentText(pose.cost.supportFilament());
    const std::string text =
        own == "0 mm" ? "no support" : fmt::format("about {} of support filament", own);
    if (pose.rotation.isIdenticalMatrix()) return text;
    std::string other = filamentText(asItLies.cost.supportFilament());
    if (other == "0 mm") other = "none";
    const auto unitOf = [](std::string_view t) { return t.substr(t.find(' ') + 1); };
    if (own != "0 mm" && unitOf(own) == unitOf(other)) other.resize(other.find(' '));
    return fmt::format("{} instead of {} as it lies; {}", text, other,
                       heightText(pose.measures.height - asItLies.measures.height));
}

std::string row(const std::string& mark, const BuildPose& pose) {
    const OptimizeOrient::PoseMeasures& m = pose.measures;
    return fmt::format("{:>5}  {:>8}  {:>10}  {:>9.2f}  {:>9.0f}   {}{}\n", mark,
                       filamentText(pose.cost.supportFilament()), wholeText(m.contactArea),
                       static_cast<double>(m.height), static_cast<double>(pose.cost.total()),
                       textOf(upIn(pose)), m.stands ? "" : "  does not stand");
}

std::string counted(int count, const std::string& what) {
    return count == 0 ? "" : fmt::format("{} {} {}. ", count, count == 1 ? "pose" : "poses", what);
}

std::string passedOverText(const OrientOptions& options, const BuildPoses& result) {
    const UVector3<float>& room = options.poseGoal.buildVolume;
    const std::string volume = fmt::format("{:g} × {:g} × {:g} mm", room.x, room.y, room.z);
    std::string text =
        counted(result.passedOver.tooLarge, fmt::format("passed over: not within {}", volume)) +
        counted(result.passedOver.keptOff, "passed over: kept off");
    if (!text.empty()) text.back() = '\n';
    return text;
}

}  // namespace

std::string reasonFor(const OrientOptions& options, const BuildPoses& result) {
    const BuildPose& pose = result.poses[static_cast<std::size_t>(options.rank - 1)];
    const std::string which = options.rank == 1 ? "Best" : fmt::format("Rank {}", options.rank);
    const std::string stands =
        pose.measures.stands ? fmt::format("stands on {} mm²", wholeText(pose.measures.contactArea))
                             : "no pose stands by itself: it needs a brim or a raft";
    return fmt::format("{}: {}: {}; {}.", which, sideOf(pose), supportText(pose, result.asItLies),
                       stands);
}

std::string posesText(const OrientOptions& options, const OrientResult& result) {
    const BuildPoses& found = result.poses;
    std::string text =
        " Rank   Support     Contact     Height       Cost   Direction of the part\n"
        "      filament,         mm²         mm    (low is   that points up\n"
        "          about                           better)\n";
    for (std::size_t i = 0; i < found.poses.size(); ++i) {
        const int rank = static_cast<int>(i) + 1;
        text += row(fmt::format("{}{:>3}", rank == options.rank ? "*" : " ", rank), found.poses[i]);
    }
    text += row("as is", found.asItLies) + "\n" + passedOverText(options, found);
    const BuildPose& chosen = found.poses[static_cast<std::size_t>(options.rank - 1)];
    text += reasonFor(options, found) + "\n";
    const std::string turn = textOf(turnIn(chosen.rotation));
    return fmt::format("{}To get there, {}.\n", text, turn);
}

std::string posesTable(const OrientOptions& options, const OrientResult& result) {
    return headingOf(options, result.part) + posesText(options, result);
}

std::string whyNoPose(const OrientOptions& options, const BuildPoses& poses) {
    const UVector3<float>& box = poses.nearestMisfit;
    const UVector3<float>& room = options.poseGoal.buildVolume;
    if (poses.passedOver.tooLarge > 0) {
        return fmt::format(
            "no pose fits {:g} × {:g} × {:g} mm; the nearest needs {:.1f} × {:.1f} × {:.1f} mm",
            room.x, room.y, room.z, box.x, box.y, box.z);
    }
    if (poses.passedOver.keptOff > 0) return "no pose keeps --keep-off off the plate and support";
    return "no pose can be measured";
}

}  // namespace App
