#pragma once

#include <gtest/gtest.h>

#include "EvaluateOrient.h"
#include "FlatMesh.h"
#include "FloatBits.h"
#include "PlainEvaluation.h"

/// What an evaluation is asked for beside mesh and direction.
struct Question {
    float overhangAngle = 45.0f;
    bool computeSupport = true;
    float baseHeight = 0.0f;
    PlainSearch search = PlainSearch::kTrianglesOfColumn;
};

/// The evaluation under test, with its outputs in one record. The outputs start with rubbish, so
/// that one which is not set shows.
inline PlainScores evaluated(const std::vector<float>& areas, const FlatMesh& mesh,
                             const UVector3<float>& direction, const Question& question,
                             EvaluationBuffers& buffers) {
    PlainScores s{-77.0f, -77.0f, -77.0f, -77.0f, -77.0f, -77.0f};
    evaluateOrient(areas, mesh, direction, question.overhangAngle, question.computeSupport,
                   s.height, s.supportVolume, s.overhangArea, s.projectedArea, s.boxVolume,
                   s.reservedScore, question.baseHeight, buffers);
    return s;
}

/// The same for one direction alone.
inline PlainScores evaluated(const MeshKernel& mesh, const UVector3<float>& direction,
                             const Question& question) {
    EvaluationBuffers buffers;
    return evaluated(plainAreas(mesh), flatten(*mesh.getMesh(), mesh.getMatrix()), direction,
                     question, buffers);
}

inline std::string inHex(const PlainScores& s) {
    return "height " + hexFloat(s.height) + ", supportVolume " + hexFloat(s.supportVolume) +
           ", overhangArea " + hexFloat(s.overhangArea) + ", projectedArea " +
           hexFloat(s.projectedArea) + ", boxVolume " + hexFloat(s.boxVolume) + ", reservedScore " +
           hexFloat(s.reservedScore);
}

inline testing::AssertionResult areSame(const PlainScores& a, const PlainScores& b) {
    if (sameBits(a.height, b.height) && sameBits(a.supportVolume, b.supportVolume) &&
        sameBits(a.overhangArea, b.overhangArea) && sameBits(a.projectedArea, b.projectedArea) &&
        sameBits(a.boxVolume, b.boxVolume) && sameBits(a.reservedScore, b.reservedScore)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "\n    " << inHex(a) << "\n    " << inHex(b);
}

/// Compares the evaluation with the plain one, bit for bit, over the given directions.
inline void expectSameAsPlain(const MeshKernel& mesh,
                              const std::vector<UVector3<float>>& directions,
                              const Question& question) {
    const std::vector<float> areas = plainAreas(mesh);
    const FlatMesh flat = flatten(*mesh.getMesh(), mesh.getMatrix());
    EvaluationBuffers buffers;
    for (const UVector3<float>& d : directions) {
        const PlainScores plain =
            plainEvaluation(areas, mesh, d, question.overhangAngle, question.computeSupport,
                            question.baseHeight, question.search);
        ASSERT_TRUE(areSame(evaluated(areas, flat, d, question, buffers), plain))
            << "\ndirection " << hexFloat(d.x) << ' ' << hexFloat(d.y) << ' ' << hexFloat(d.z)
            << ", base height " << question.baseHeight;
    }
}
