#include <string>
#include <vector>

#include "MinBoundingBox.h"
#include "c/Arrays.h"
#include "c/Call.h"
#include "c/Guard.h"

using namespace Tesk::c;

namespace {

OrientedBox3 search(const std::vector<UPoint3<float>>& points, std::int32_t criterion,
                    const float* axis, Call& how) {
    const int count = static_cast<int>(points.size());
    if (criterion == TESK_BOX_PRINCIPAL) return MinBoundingBox::generateOBB(points.data(), count);
    MinBoundingBox calculator(how.threads());
    calculator.setCallBackFunction(how.progress());
    if (criterion == TESK_BOX_VOLUME) return calculator(count, points.data());
    if (criterion == TESK_BOX_BASE_AREA) return calculator.minBaseAreaBox(count, points.data());
    if (criterion == TESK_BOX_BASE_HEIGHT) {
        return calculator.minBaseAreaAndHeightBox(count, points.data());
    }
    const auto [x, y, z] = floatsOf<3>(axis);
    return calculator.minBaseAreaBoxAroundAxis(count, points.data(), {x, y, z});
}

tesk_box recordOf(const OrientedBox3& found, float half) {
    tesk_box box{};
    box.struct_size = sizeof box;
    for (int i = 0; i < 3; ++i) {
        box.center[i] = found.center[i];
        box.half_extents[i] = found.extent[i] * half;
        for (int k = 0; k < 3; ++k) box.axes[i][k] = found.axis[i][k];
    }
    return box;
}

}  // namespace

tesk_status tesk_smallest_box(const tesk_points* points, int32_t criterion, const float* axis,
                              const tesk_call* call, tesk_box* box) {
    return guarded([&] {
        needStruct(points, "points");
        needStruct(box, "box");
        if (criterion < TESK_BOX_VOLUME || criterion > TESK_BOX_PRINCIPAL) {
            refuse("no criterion is " + std::to_string(criterion));
        }
        if (criterion == TESK_BOX_AROUND_AXIS) need(axis, "axis");
        const auto given = pointsOf(*points, "points");
        Call how(call);
        how.run([&] {
            const OrientedBox3 found = search(given, criterion, axis, how);
            if (found.axis[0] == UVector3<float>(1, 1, 1)) {
                throw CallError(TESK_NO_RESULT, "there is no such box");
            }
            *box = recordOf(found, criterion == TESK_BOX_PRINCIPAL ? 0.5f : 1.0f);
        });
    });
}
