#pragma once

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "CInterfaceInput.h"
#include "teskorient.h"

/// A sequence of calls of the C interface: what it has made, and one call after the other. Aborts
/// where the library answers what it must not.
class Sequence {
 public:
    explicit Sequence(FuzzInput& input) : m_input(input) {}
    ~Sequence();
    Sequence(const Sequence&) = delete;
    Sequence& operator=(const Sequence&) = delete;

    void run();

 private:
    using Ranking = decltype(&tesk_rank);

    struct Callback {
        std::int32_t endsAt;
        bool throws;
    };

    static std::int32_t TESK_CALL report(std::int32_t percent, void* user);

    void runOne();

    // Each takes its arguments from the input.
    void createMesh();
    void freeOne();
    void copyMesh();
    void placeMesh();
    void checkMesh();
    void findHull();
    void findPoses();
    void measurePose();
    void rank(Ranking function, std::int32_t most);  ///< the twelve, or all
    void layFlat();
    void findBox();
    void readPart();
    void describePart();
    void takeMeshOfPart();
    void askVersion();

    tesk_call* takeCall();
    const float* takeMatrix();
    const tesk_goal* takeGoal();
    tesk_points takePointsOf(Rows& rows);

    /// The status is one of the interface's, and a failure has a text.
    static void expect(tesk_status status);

    template <class Handle>
    void keep(tesk_status status, Handle* handle, std::vector<Handle*>& list) {
        constexpr std::size_t kMostHandles = 4;
        expect(status);
        if ((status == TESK_OK) != (handle != nullptr)) std::abort();
        if (handle == nullptr) return;
        if (list.size() == kMostHandles) {
            tesk_free(list.front());
            list.erase(list.begin());
        }
        list.push_back(handle);
    }

    template <class Handle>
    Handle* take(const std::vector<Handle*>& list) {
        const auto which = m_input.take<std::uint8_t>();
        return list.empty() || which == 255 ? nullptr : list[which % list.size()];
    }

    FuzzInput& m_input;
    std::vector<tesk_mesh*> m_meshes;
    std::vector<tesk_part*> m_parts;
    std::vector<tesk_keep_off> m_rules;
    std::vector<float> m_matrix;
    tesk_goal m_goal{};
    tesk_call m_call{};
    Callback m_callback{};
    std::size_t m_length = 0;
};
