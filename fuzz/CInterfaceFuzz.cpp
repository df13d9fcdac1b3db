// Any sequence of calls of the C interface, with any sizes, nulls, strides and lifetimes: each must
// return a status that fits, and nothing may be lost. Arrays have exactly the bytes that a call may
// read.

#include "CInterfaceSequence.h"

namespace {

constexpr int kMostCalls = 24;

}  // namespace

Sequence::~Sequence() {
    for (tesk_mesh* mesh : m_meshes) tesk_free(mesh);
    for (tesk_part* part : m_parts) tesk_free(part);
}

void Sequence::run() {
    for (int i = 0; i < kMostCalls && !m_input.isEmpty(); ++i) runOne();
}

void Sequence::runOne() {
    switch (m_input.take<std::uint8_t>() % 16) {
        case 0:
            return createMesh();
        case 1:
            return freeOne();
        case 2:
            return copyMesh();
        case 3:
            return placeMesh();
        case 4:
            return findPoses();
        case 5:
            return measurePose();
        case 6:
            return rank(tesk_rank, 12);
        case 7:
            return layFlat();
        case 8:
            return findBox();
        case 9:
            return findHull();
        case 10:
            return readPart();
        case 11:
            return describePart();
        case 12:
            return takeMeshOfPart();
        case 13:
            return askVersion();
        case 14:
            return checkMesh();
        default:
            return rank(tesk_rank_all, 58);
    }
}

std::int32_t TESK_CALL Sequence::report(std::int32_t percent, void* user) {
    const Callback& callback = *static_cast<const Callback*>(user);
    if (percent < 0 || percent > 100) std::abort();
    if (percent < callback.endsAt) return 0;
    if (callback.throws) throw callback.endsAt;
    return 1;
}

void Sequence::expect(tesk_status status) {
    if (status < TESK_OK || status >= TESK_INTERNAL_ERROR) std::abort();
    if (status != TESK_OK && *tesk_last_error() == '\0') std::abort();
}

tesk_call* Sequence::takeCall() {
    if (takeRarely(m_input)) return nullptr;
    m_call = takeSized<tesk_call>(m_input);
    m_call.threads = takeRarely(m_input) ? -1 : 1 + m_input.take<std::uint8_t>() % 3;
    m_callback = {m_input.take<std::uint8_t>() % 150, takeRarely(m_input)};
    m_call.progress = takeRarely(m_input) ? nullptr : report;
    m_call.user = &m_callback;
    return &m_call;
}

const float* Sequence::takeMatrix() {
    if (takeRarely(m_input)) return nullptr;
    m_matrix.assign(16, 0.0f);
    for (float& value : m_matrix) value = takeNumber(m_input) * 0.1f;
    return m_matrix.data();
}

tesk_points Sequence::takePointsOf(Rows& rows) {
    auto points = takeSized<tesk_points>(m_input);
    rows = takePoints(m_input, points.type);
    points.data = rows.data();
    points.count = tellable(takeOddly(m_input, rows.count), rows.count, true);
    points.stride = takeStride(m_input, rows);
    if (takeRarely(m_input)) points.data = nullptr;
    return points;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    Sequence(input).run();
    return 0;
}
