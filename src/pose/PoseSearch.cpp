#include "pose/PoseSearch.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "pose/measures/PoseMeasuring.h"
#include "pose/resting/HullFaceSnap.h"
#include "pose/resting/StableFaces.h"
#include "pose/spin/PoseLimits.h"
#include "pose/spin/WallSpin.h"

namespace Tesk::pose {

namespace {

/// Candidates that are set down together, at least.
constexpr std::size_t kBatch = 12;

constexpr std::size_t kMostPoses = 12;

/// The number of hull faces that are tried if no candidate stands.
constexpr std::size_t kMostFaces = 32;

/// The number of poses that are listed if none stands.
constexpr std::size_t kMostFallen = 2;

/// The share of its cost that the part as it lies is ranked by: others must be better by that.
constexpr float kStays = 0.99f;

/// Costs within this factor of the least are equal for all that sampling can tell: turning a pose
/// by 180° changes its sampled volume, which is most of many a cost, by up to 5 %.
constexpr float kTie = 1.03f;

/// How often another frame's directions are tried.
constexpr int kRounds = 3;

}  // namespace

PoseSearch::PoseSearch(const MeshKernel& kernel, const OptimizeOrient::PoseGoal& goal,
                       const std::function<void(int)>& progress)
    : m_kernel(kernel), m_goal(goal), m_progress(progress), m_mesh(kernel) {}

OptimizeOrient::BuildPoses PoseSearch::run() {
    if (m_mesh.flat.corners.empty()) {
        for (const int percent : {3, 10, 90, 100}) report(percent);
        return {};
    }
    m_log.logElapse("Pose-Mesh");
    m_directions = poseDirections(m_kernel, m_mesh);
    m_log.logElapse("Pose-Directions");
    report(3);
    report(10);
    const std::vector<PoseCandidate> candidates =
        costedCandidates(m_mesh, m_goal, m_directions, kBatch, m_progress);
    m_log.logElapse("Pose-Candidates");
    report(90);
    tryCandidates(candidates);
    if (m_result.poses.empty()) tryStableFaces();
    if (m_result.poses.empty()) measureThoseThatFall();
    tryFramesOfWinners();
    if (!m_isMeasuredAsItLies) measure({});
    rank();
    if (m_result.noneStands) m_result.passedOver.cannotStand = 0;
    report(100);
    return std::move(m_result);
}

void PoseSearch::tryCandidates(const std::vector<PoseCandidate>& candidates) {
    // The part may stay on the face that it lies on, even if a larger one is near.
    const std::vector<PoseOnFace> present =
        takeNew({setDown(m_mesh, m_goal, {0.0, 0.0, 1.0}, SetDownTo::kPresentFace)});
    for (std::size_t first = 0; first < candidates.size(); first += kBatch) {
        const std::size_t end = std::min(first + kBatch, candidates.size());
        Directions batch;
        for (std::size_t i = first; i < end; ++i) batch.push_back(candidates[i].up);
        std::vector<PoseOnFace> standing = setDownAll(batch);
        if (first == 0) standing.insert(standing.end(), present.begin(), present.end());
        if (!standing.empty()) measure(standing);
        if (!m_result.poses.empty()) return;
    }
}

std::vector<PoseOnFace> PoseSearch::setDownAll(const Directions& ups) {
    std::vector<PoseOnFace> poses(ups.size());
    nextStage().run(poses.size(), [&](std::size_t i) {
        poses[i] = setDown(m_mesh, m_goal, ups[i].As<double>(), SetDownTo::kFaceToStandOn);
    });
    m_log.logElapse("Pose-SetDown");
    return takeNew(poses);
}

/// Keeps the poses that are new, judged, and returns those of them that are allowed and stand.
std::vector<PoseOnFace> PoseSearch::takeNew(const std::vector<PoseOnFace>& poses) {
    const std::size_t before = m_found.size();
    for (const PoseOnFace& pose : poses) {
        const auto isAlike = [&](const PoseOnFace& other) { return pose.isAlike(other); };
        if (std::none_of(m_found.begin(), m_found.end(), isAlike)) m_found.push_back(pose);
    }
    const auto fresh = std::span(m_found).subspan(before);
    nextStage().run(fresh.size(), [&](std::size_t i) { judge(m_mesh, m_goal, fresh[i]); });
    m_log.logElapse("Pose-Judge");
    std::vector<PoseOnFace> standing;
    for (const PoseOnFace& pose : fresh) {
        count(pose);
        if (pose.stands && pose.isAllowed()) standing.push_back(pose);
    }
    return standing;
}

void PoseSearch::count(const PoseOnFace& pose) {
    OptimizeOrient::PassedOver& passed = m_result.passedOver;
    if (pose.isKeptOff) {
        ++passed.keptOff;
    } else if (pose.isLittleContact) {
        ++passed.littleContact;
    } else if (!pose.stands) {
        ++passed.cannotStand;
    }
}

/// Turns and measures poses, those that fit; with the first ones, the part as it lies.
void PoseSearch::measure(const std::vector<PoseOnFace>& upright) {
    std::vector<UMatrix4<float>> turned(upright.size());
    std::vector<char> fits(upright.size());
    std::vector<PoseSize> sizes(upright.size());
    nextStage().run(upright.size(), [&](std::size_t i) {
        fits[i] = turnToFit(upright[i], turned[i], sizes[i]) ? 1 : 0;
    });
    std::vector<UMatrix4<float>> rotations;
    for (std::size_t i = 0; i < upright.size(); ++i) {
        if (fits[i] != 0) {
            rotations.push_back(turned[i]);
        } else {
            noteMisfit(sizes[i]);
        }
    }
    if (!m_isMeasuredAsItLies) rotations.emplace_back();
    PoseWork work = nextStage();
    m_log.logElapse("Pose-Turn");
    std::vector<BuildPose> poses = measurePoses(m_mesh, m_goal, rotations, work);
    m_log.logElapse("Pose-Measure");
    if (!m_isMeasuredAsItLies) {
        m_result.asItLies = poses.back();
        poses.pop_back();
        m_isMeasuredAsItLies = true;
    }
    for (const BuildPose& pose : poses) {
        if (std::isfinite(pose.cost.total())) m_result.poses.push_back(pose);
    }
}

/// The rotation of a pose that fits the build volume: with its walls along the axes, or else in its
/// least rectangle.
bool PoseSearch::turnToFit(const PoseOnFace& pose, UMatrix4<float>& rotation,
                           PoseSize& size) const {
    constexpr double kQuarter = 1.5707963267948966;
    const PoseTurn upright = uprightTurn(pose.up);
    for (const bool isByWalls : {true, false}) {
        PoseTurn turn =
            isByWalls ? withWallsAlongAxes(m_mesh, upright) : withLeastRectangle(m_mesh, upright);
        size = sizeOf(m_mesh, turn);
        const Fit fit = fitOf(m_goal, size);
        if (fit == Fit::kNot) continue;
        if (fit == Fit::kTurnedBy90) turn = turn.then(PoseTurn::aboutUp(kQuarter));
        rotation = turn.matrix();
        return true;
    }
    return false;
}

void PoseSearch::noteMisfit(const PoseSize& size) {
    ++m_result.passedOver.tooLarge;
    const UVector3<float>& nearest = m_result.nearestMisfit;
    const PoseSize before = {static_cast<double>(nearest.x), static_cast<double>(nearest.y),
                             static_cast<double>(nearest.z)};
    if (m_result.passedOver.tooLarge > 1 && !(excessOf(m_goal, size) < excessOf(m_goal, before))) {
        return;
    }
    m_result.nearestMisfit = {static_cast<float>(size.alongX), static_cast<float>(size.alongY),
                              static_cast<float>(size.height)};
}

/// No candidate stands: then the faces of the hull under the centroid are tried.
void PoseSearch::tryStableFaces() {
    const std::vector<PoseOnFace> standing =
        setDownAll(notYetTried(upOnStableFaces(m_mesh, kMostFaces)));
    if (!standing.empty()) measure(standing);
}

/// Nothing stands: then the best of what is allowed.
void PoseSearch::measureThoseThatFall() {
    std::vector<PoseOnFace> poses;
    for (const PoseOnFace& pose : m_found) {
        if (poses.size() == kMostFallen) break;
        if (pose.isAllowed()) poses.push_back(pose);
    }
    nextStage().run(poses.size(), [&](std::size_t i) {
        if (poses[i].isSetDown) return;
        poses[i] = setDown(m_mesh, m_goal, poses[i].up, SetDownTo::kAnyFace);
        judge(m_mesh, m_goal, poses[i]);
    });
    std::vector<PoseOnFace> fallen;
    for (const PoseOnFace& pose : poses) {
        const auto isAlike = [&](const PoseOnFace& other) { return pose.isAlike(other); };
        if (pose.isAllowed() && std::none_of(fallen.begin(), fallen.end(), isAlike)) {
            fallen.push_back(pose);
        }
    }
    if (!fallen.empty()) measure(fallen);
    if (m_result.poses.empty()) return;
    m_result.noneStands = true;
}

/// Of directions, those that no candidate had, to within a tenth of a degree.
PoseSearch::Directions PoseSearch::notYetTried(const Directions& directions) const {
    const auto poseOf = [](const UVector3<float>& up) {
        return PoseOnFace{.up = up.As<double>().GetNormal()};
    };
    Directions fresh;
    for (const UVector3<float>& direction : directions) {
        const PoseOnFace pose = poseOf(direction);
        const bool isKnown =
            std::any_of(m_found.begin(), m_found.end(),
                        [&](const PoseOnFace& other) { return pose.isAlike(other); }) ||
            std::any_of(m_directions.begin(), m_directions.end(),
                        [&](const UVector3<float>& other) { return pose.isAlike(poseOf(other)); });
        if (!isKnown) fresh.push_back(direction);
    }
    return fresh;
}

void PoseSearch::tryFramesOfWinners() {
    for (int round = 0; round < kRounds && !m_result.poses.empty(); ++round) {
        rank();
        const UMatrix4<float> winner = m_result.poses.front().rotation;
        const Directions ups = cheapEnough(notYetTried(fixedDirectionsIn(winner)));
        const std::vector<PoseOnFace> standing = setDownAll(ups);
        if (standing.empty()) return;
        if (m_result.noneStands) m_result.poses.clear();
        measure(standing);
        m_result.noneStands = m_result.noneStands && m_result.poses.empty();
        rank();
        if (!m_result.poses.empty() && m_result.poses.front().rotation == winner) return;
    }
}

/// Of directions, those that can be better than the best pose so far.
PoseSearch::Directions PoseSearch::cheapEnough(const Directions& directions) {
    m_directions.insert(m_directions.end(), directions.begin(), directions.end());
    if (m_result.noneStands) return directions;
    // Setting a direction down may lower its cost by this factor and more, but rarely.
    constexpr float kWithinReach = 2.0f;
    const float limit = keyOf(m_result.poses.front());
    const std::function<void(int)> still = [this](int) { report(m_percent); };
    const Directions low = worthSampling(m_mesh, m_goal, directions, limit, kWithinReach * limit);
    Directions ups;
    for (const PoseCandidate& candidate :
         costedCandidates(m_mesh, m_goal, low, low.size(), still)) {
        if (candidate.cost < kWithinReach * limit) ups.push_back(candidate.up);
    }
    m_log.logElapse("Pose-CandidatesOfWinner");
    return ups;
}

float PoseSearch::keyOf(const BuildPose& pose) const {
    const float total = pose.cost.total();
    return pose.rotation.isIdenticalMatrix() ? total * kStays : total;
}

/// The best first. Rounding may decide that a pose does not stand after all.
void PoseSearch::rank() {
    std::vector<BuildPose>& poses = m_result.poses;
    std::stable_sort(poses.begin(), poses.end(), [&](const BuildPose& a, const BuildPose& b) {
        if (a.measures.stands != b.measures.stands) return a.measures.stands;
        return keyOf(a) < keyOf(b);
    });
    if (poses.size() > kMostPoses) poses.resize(kMostPoses);
    putLeastSupportFirst();
}

/// Of the poses that cost no more than the best but for a tie, the one with the least support goes
/// first, unless the part lies in the best already.
void PoseSearch::putLeastSupportFirst() {
    std::vector<BuildPose>& poses = m_result.poses;
    if (poses.empty() || poses.front().rotation.isIdenticalMatrix()) return;
    const float limit = keyOf(poses.front()) * kTie;
    const bool stand = poses.front().measures.stands;
    auto best = poses.begin();
    for (auto pose = poses.begin(); pose != poses.end(); ++pose) {
        if (pose->measures.stands != stand || !(keyOf(*pose) <= limit)) break;
        if (pose->cost.supportFilament() < best->cost.supportFilament()) best = pose;
    }
    std::rotate(poses.begin(), best, best + 1);
}

void PoseSearch::report(int percent) const {
    if (m_progress) m_progress(percent);
}

PoseWork PoseSearch::nextStage() {
    const int first = m_percent;
    m_percent = std::min(m_percent + 2, 99);
    return {m_progress, first, m_percent};
}

}  // namespace Tesk::pose
