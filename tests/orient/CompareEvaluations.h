#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <vector>

#include "orient/evaluation/EvaluateOrient.h"
#include "orient/turn/Flatten.h"
#include "plain/PlainEvaluation.h"
#include "tools/FloatBits.h"
#include "tools/TestSize.h"

namespace Tesk::orient {

/// What an evaluation is asked for beside mesh and direction.
struct Question {
    float overhangAngle = 45.0f;
    bool computeSupport = true;
    float baseHeight = 0.0f;
    PlainSearch search = PlainSearch::kTrianglesOfColumn;
};

/// The evaluation under test, for directions that are turned in groups.
inline std::vector<PlainScores> evaluatedTogether(const std::vector<UVector3<float>>& directions,
                                                  OrientEvaluator& evaluator) {
    std::vector<PlainScores> scores(directions.size());
    for (std::size_t first = 0; first < directions.size(); first += kGroupSize) {
        const std::size_t count = std::min(kGroupSize, directions.size() - first);
        evaluator.begin(std::span(directions).subspan(first, count));
        for (std::size_t k = 0; k < count; ++k) {
            const OrientMeasures m = evaluator.evaluate(k);
            scores[first + k] = {m.height,        m.supportVolume, m.overhangArea,
                                 m.projectedArea, m.boxVolume,     m.reservedScore};
        }
    }
    return scores;
}

/// One direction measured by itself, with the tree. The outputs start with rubbish, so that one
/// which is not set shows.
inline PlainScores evaluatedAlone(const std::vector<float>& areas, const MeshKernel& mesh,
                                  const UVector3<float>& direction, const Question& question) {
    PlainScores s{-77.0f, -77.0f, -77.0f, -77.0f, -77.0f, -77.0f};
    evaluateOrient(areas, &mesh, direction, question.overhangAngle, question.computeSupport,
                   s.height, s.supportVolume, s.overhangArea, s.projectedArea, s.boxVolume,
                   s.reservedScore, question.baseHeight);
    return s;
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

/// The measures of one direction, which come out the same from the evaluator of the candidates and
/// from the measuring of one direction by itself.
inline PlainScores evaluated(const std::vector<float>& areas, const MeshKernel& mesh,
                             const UVector3<float>& direction, const Question& question) {
    const FlatMesh flat = flatten(*mesh.getMesh(), mesh.getMatrix());
    OrientEvaluator evaluator(areas, flat, question.overhangAngle, question.computeSupport,
                              question.baseHeight);
    const PlainScores scores = evaluatedTogether({direction}, evaluator).front();
    EXPECT_TRUE(areSame(scores, evaluatedAlone(areas, mesh, direction, question)));
    return scores;
}

inline PlainScores evaluated(const MeshKernel& mesh, const UVector3<float>& direction,
                             const Question& question) {
    return evaluated(plainAreas(mesh), mesh, direction, question);
}

/// Compares both ways to evaluate with the plain one, bit for bit, over the given directions, with
/// every width of vectors that this processor has.
inline void expectSameAsPlain(const MeshKernel& mesh,
                              const std::vector<UVector3<float>>& directions,
                              const Question& question) {
    const std::vector<float> areas = plainAreas(mesh);
    const FlatMesh flat = flatten(*mesh.getMesh(), mesh.getMatrix());
    std::vector<PlainScores> plain;
    for (const UVector3<float>& d : directions) {
        plain.push_back(plainEvaluation(areas, mesh, d, question.overhangAngle,
                                        question.computeSupport, question.baseHeight,
                                        question.search));
    }
    for (const TurnKernels* kernels : availableTurnKernels()) {
        useTurnKernels(*kernels);
        OrientEvaluator evaluator(areas, flat, question.overhangAngle, question.computeSupport,
                                  question.baseHeight);
        const std::vector<PlainScores> scores = evaluatedTogether(directions, evaluator);
        for (std::size_t i = 0; i < directions.size(); ++i) {
            const UVector3<float>& d = directions[i];
            ASSERT_TRUE(areSame(scores[i], plain[i]))
                << "\ndirection " << hexFloat(d.x) << ' ' << hexFloat(d.y) << ' ' << hexFloat(d.z)
                << ", base height " << question.baseHeight << ", " << kernels->name;
        }
    }
    const std::size_t stride = testsAreSmall() ? 3 : 1;
    for (std::size_t i = 0; i < directions.size(); i += stride) {
        ASSERT_TRUE(areSame(evaluatedAlone(areas, mesh, directions[i], question), plain[i]))
            << "\ndirection " << i << " alone, base height " << question.baseHeight;
    }
}

}  // namespace Tesk::orient
