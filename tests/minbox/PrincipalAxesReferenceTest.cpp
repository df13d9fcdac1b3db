#include <gtest/gtest.h>

#include "CompareBoxes.h"
#include "PlainPrincipalBox.h"
#include "ReferencePointSets.h"

namespace {

class PrincipalAxesReference : public testing::TestWithParam<NamedPoints> {};

TEST_P(PrincipalAxesReference, TheBoxAgrees) {
    const Points& points = GetParam().points;
    EXPECT_TRUE(agree(plainPrincipalBox(points),
                      MinBoundingBox::generateOBB(points.data(), countOf(points))));
}

INSTANTIATE_TEST_SUITE_P(Reference, PrincipalAxesReference,
                         testing::ValuesIn(referenceSolidsAndMeshes(2000)), nameOfPoints);

}  // namespace
