#include <algorithm>
#include <cmath>
#include <string>

#include "BuildPose.h"
#include "c/Arrays.h"
#include "c/Call.h"
#include "c/Guard.h"
#include "c/Handles.h"

using namespace Tesk::c;
using OptimizeOrient::BuildPose;
using OptimizeOrient::BuildPoses;
using OptimizeOrient::KeepOff;
using OptimizeOrient::PoseGoal;

namespace {

/// A direction that says nothing is refused: a host that forgot to set it would think that a face
/// is kept off the plate.
KeepOff ruleOf(const tesk_keep_off& rule, std::int32_t i) {
    const UVector3<float> direction(rule.direction[0], rule.direction[1], rule.direction[2]);
    const bool isFinite =
        std::isfinite(direction.x) && std::isfinite(direction.y) && std::isfinite(direction.z);
    if (isFinite && !(direction == UVector3<float>(0, 0, 0)) && std::isfinite(rule.angle_deg)) {
        return {direction, rule.angle_deg};
    }
    refuse("goal: keep_off " + std::to_string(i) + " has no direction or angle");
}

PoseGoal goalOf(const tesk_goal* goal) {
    if (goal == nullptr) return PoseGoal::balanced();
    needStruct(goal, "goal");
    needStructs(goal->keep_off, goal->keep_off_count, "goal: keep_off");
    PoseGoal read;
    read.overhangAngleDeg = goal->overhang_angle_deg;
    read.supportVolumeCost = goal->support_volume_cost;
    read.overhangAreaCost = goal->overhang_area_cost;
    read.heightCost = goal->height_cost;
    read.buildVolume = {goal->build_volume[0], goal->build_volume[1], goal->build_volume[2]};
    read.leastContactArea = goal->least_contact_area;
    for (std::int32_t i = 0; i < goal->keep_off_count; ++i) {
        read.keepOff.push_back(ruleOf(goal->keep_off[i], i));
    }
    return read;
}

tesk_pose recordOf(const BuildPose& pose) {
    tesk_pose record{};
    record.struct_size = sizeof record;
    copyTo(record.rotation, pose.rotation);
    const OptimizeOrient::PoseMeasures& m = pose.measures;
    record.height = m.height;
    record.footprint[0] = m.footprintX;
    record.footprint[1] = m.footprintY;
    record.support_volume = m.supportVolume;
    record.overhang_area = m.overhangArea;
    record.overhang_area_on_part = m.overhangAreaOnPart;
    record.contact_area = m.contactArea;
    record.contact_islands = m.contactIslands;
    record.tilt_margin_deg = m.tiltMarginDeg;
    record.lies_flat = m.liesFlat ? 1 : 0;
    record.stands = m.stands ? 1 : 0;
    record.support_volume_cost = pose.cost.supportVolume;
    record.overhang_area_cost = pose.cost.overhangArea;
    record.height_cost = pose.cost.height;
    return record;
}

tesk_pose_summary summaryOf(const BuildPoses& found) {
    return {
        .struct_size = sizeof(tesk_pose_summary),
        .pose_count = static_cast<std::int32_t>(found.poses.size()),
        .none_stands = found.noneStands ? 1 : 0,
        .kept_off = found.passedOver.keptOff,
        .too_large = found.passedOver.tooLarge,
        .little_contact = found.passedOver.littleContact,
        .cannot_stand = found.passedOver.cannotStand,
        .nearest_misfit = {found.nearestMisfit.x, found.nearestMisfit.y, found.nearestMisfit.z}};
}

void refuseNoPose(const BuildPoses& found) {
    if (!found.poses.empty()) return;
    const OptimizeOrient::PassedOver& over = found.passedOver;
    const int allowedNone = over.keptOff + over.tooLarge + over.littleContact;
    throw CallError(TESK_NO_RESULT, allowedNone > 0
                                        ? "no pose is within the goal's limits"
                                        : "the mesh has no triangles, or its size is not finite");
}

}  // namespace

tesk_status tesk_goal_init(tesk_goal* goal, int32_t which) {
    return guarded([&] {
        needStruct(goal, "goal");
        if (which != TESK_GOAL_BALANCED && which != TESK_GOAL_LEAST_SUPPORT) {
            refuse("no goal is " + std::to_string(which));
        }
        const PoseGoal named =
            which == TESK_GOAL_BALANCED ? PoseGoal::balanced() : PoseGoal::leastSupport();
        *goal = {};
        goal->struct_size = sizeof *goal;
        goal->overhang_angle_deg = named.overhangAngleDeg;
        goal->support_volume_cost = named.supportVolumeCost;
        goal->overhang_area_cost = named.overhangAreaCost;
        goal->height_cost = named.heightCost;
        goal->least_contact_area = named.leastContactArea;
    });
}

tesk_status tesk_find_poses(const tesk_mesh* mesh, const tesk_goal* goal, const tesk_call* call,
                            tesk_pose* poses, int32_t capacity, tesk_pose* as_it_lies,
                            tesk_pose_summary* summary) {
    return guarded([&] {
        needHandle(mesh, "mesh");
        needStructs(poses, capacity, "poses");
        if (as_it_lies != nullptr) needStruct(as_it_lies, "as_it_lies");
        if (summary != nullptr) needStruct(summary, "summary");
        const PoseGoal wanted = goalOf(goal);
        Call how(call);
        how.run([&] {
            const BuildPoses found = findBuildPoses(mesh->kernel, wanted, how.progress());
            const std::size_t room =
                std::min(found.poses.size(), static_cast<std::size_t>(capacity));
            std::transform(found.poses.begin(),
                           found.poses.begin() + static_cast<std::ptrdiff_t>(room), poses,
                           recordOf);
            if (as_it_lies != nullptr) *as_it_lies = recordOf(found.asItLies);
            if (summary != nullptr) *summary = summaryOf(found);
            refuseNoPose(found);
        });
    });
}

tesk_status tesk_measure_pose(const tesk_mesh* mesh, const tesk_goal* goal, const tesk_call* call,
                              const float rotation[16], tesk_pose* pose) {
    return guarded([&] {
        needHandle(mesh, "mesh");
        need(rotation, "rotation");
        needStruct(pose, "pose");
        const PoseGoal wanted = goalOf(goal);
        const Call how(call);
        *pose = recordOf(measurePose(mesh->kernel, wanted, matrixOf(rotation)));
    });
}
