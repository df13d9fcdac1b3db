#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <thread>
#include <type_traits>
#include <vector>

#include "MinBoundingBox.h"
#include "shapes/BoxShapes.h"

namespace {

const Points kBox = boxCorners(2, 3, 4);

int reportsOf(MinBoundingBox& boxOf, const int& reports) {
    const int before = reports;
    boxOf(static_cast<int>(kBox.size()), kBox.data());
    return reports - before;
}

TEST(Handle, IsOnePointerWithoutVirtualFunctions) {
    EXPECT_EQ(sizeof(MinBoundingBox), sizeof(void*));
    EXPECT_FALSE(std::is_polymorphic_v<MinBoundingBox>);
}

TEST(Handle, TheBoxHasFiveVectors) {
    EXPECT_EQ(sizeof(OrientedBox3), 60u);
    EXPECT_EQ(offsetof(OrientedBox3, center), 0u);
    EXPECT_EQ(offsetof(OrientedBox3, axis), 12u);
    EXPECT_EQ(offsetof(OrientedBox3, extent), 48u);
}

TEST(Handle, ANewOneSearchesOnTheCallingThread) {
    MinBoundingBox boxOf;
    std::vector<std::thread::id> threads;
    boxOf.setCallBackFunction([&](int) { threads.push_back(std::this_thread::get_id()); });
    boxOf(static_cast<int>(kBox.size()), kBox.data());
    ASSERT_FALSE(threads.empty());
    for (const std::thread::id id : threads) EXPECT_EQ(id, std::this_thread::get_id());
}

TEST(Handle, ACallbackSetThroughOneCopyIsSeenByAll) {
    int reports = 0;
    MinBoundingBox a;
    MinBoundingBox b;
    a = b;
    a.setCallBackFunction([&](int) { ++reports; });
    EXPECT_GT(reportsOf(b, reports), 0);
    MinBoundingBox c(b);
    EXPECT_GT(reportsOf(c, reports), 0);
    b.setCallBackFunction(nullptr);
    EXPECT_EQ(reportsOf(c, reports), 0);
}

TEST(Handle, TheThreadCountComesWithACopy) {
    MinBoundingBox two(2);
    MinBoundingBox copy(1);
    copy = two;
    std::atomic<int> elsewhere = 0;
    copy.setCallBackFunction([&, here = std::this_thread::get_id()](int) {
        elsewhere += std::this_thread::get_id() != here ? 1 : 0;
    });
    copy(static_cast<int>(kBox.size()), kBox.data());
    EXPECT_GT(elsewhere, 0);
}

TEST(Handle, AssigningToItselfIsHarmless) {
    int reports = 0;
    MinBoundingBox a;
    a.setCallBackFunction([&](int) { ++reports; });
    const MinBoundingBox& same = a;
    a = same;
    EXPECT_GT(reportsOf(a, reports), 0);
}

/// Counts how often what it stands for was freed.
class Freed {
 public:
    explicit Freed(int& count) : m_count(count) {}
    Freed(const Freed&) = delete;
    Freed& operator=(const Freed&) = delete;
    ~Freed() { ++m_count; }

 private:
    int& m_count;
};

TEST(Handle, TheLastCopyFreesWhatIsSharedInAnyOrderOfDestruction) {
    const int orders[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
    for (const auto& order : orders) {
        int freed = 0;
        std::vector<std::unique_ptr<MinBoundingBox>> handles;
        handles.push_back(std::make_unique<MinBoundingBox>());
        handles.push_back(std::make_unique<MinBoundingBox>(*handles[0]));
        handles.push_back(std::make_unique<MinBoundingBox>(3));
        *handles[2] = *handles[1];
        auto shared = std::make_shared<Freed>(freed);
        handles[0]->setCallBackFunction([shared](int) {});
        shared.reset();
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(freed, 0);
            handles[static_cast<std::size_t>(order[i])].reset();
        }
        EXPECT_EQ(freed, 1);
    }
}

TEST(Handle, AssignmentFreesWhatTheTargetAloneHeld) {
    int freed = 0;
    MinBoundingBox a;
    MinBoundingBox b;
    auto shared = std::make_shared<Freed>(freed);
    a.setCallBackFunction([shared](int) {});
    shared.reset();
    a = b;
    EXPECT_EQ(freed, 1);
}

TEST(Handle, ReplacingTheCallbackFreesTheOldOneAfterTheNextCall) {
    int freed = 0;
    MinBoundingBox a;
    auto shared = std::make_shared<Freed>(freed);
    a.setCallBackFunction([shared](int) {});
    shared.reset();
    a(static_cast<int>(kBox.size()), kBox.data());
    a.setCallBackFunction(nullptr);
    a(static_cast<int>(kBox.size()), kBox.data());
    EXPECT_EQ(freed, 1);
}

}  // namespace
