#include "TeskDebug/Exception.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <type_traits>

#include "TeskMeshData/UMesh.h"

namespace {

TEST(Exception, AnAbortIsAnExceptionAndARuntimeErrorAndKeepsItsText) {
    try {
        throw Tesk::AbortException("Aborting...");
    } catch (const Tesk::Exception& e) {
        EXPECT_STREQ(e.what(), "Aborting...");
        EXPECT_NE(dynamic_cast<const Tesk::AbortException*>(&e), nullptr);
    }
    static_assert(std::is_base_of_v<std::runtime_error, Tesk::Exception>);
    static_assert(std::is_base_of_v<Tesk::Exception, Tesk::AbortException>);
}

TEST(Exception, AnExceptionIsNoAbort) {
    const Tesk::Exception plain(std::string("broken"));
    EXPECT_EQ(dynamic_cast<const Tesk::AbortException*>(static_cast<const std::exception*>(&plain)),
              nullptr);
}

TEST(Exception, CopiesKeepTheText) {
    const Tesk::AbortException original("enough");
    const Tesk::AbortException copy = original;
    Tesk::AbortException assigned("other");
    assigned = copy;
    EXPECT_STREQ(assigned.what(), "enough");
}

TEST(Exception, OneThatTheMeshLibraryThrowsIsCaughtByType) {
    const std::vector<UPoint3<float>> points(2);
    const std::vector<UMesh<float>::Corners> triangles = {{0, 1, 2}};
    EXPECT_THROW(UMesh<float>(points, triangles), Tesk::Exception);
}

}  // namespace
