#include "orient/sampling/HittableTriangles.h"

#include <algorithm>

#include "TeskCommon/Assert.h"
#include "TeskCommon/Sse2.h"

namespace Tesk::orient {
namespace {

/// Few enough to stay in the first-level cache.
constexpr std::size_t kVerticesPerBlock = 512;

/// The bits of a code that mark a vertex near a sample of its column or row.
constexpr std::uint32_t kBesideASample = 0x00010001;

/// The codes of a vertex for all candidates of a group.
#ifdef TESK_HAS_SSE2
class CodeGroup {
 public:
    explicit CodeGroup(const std::uint32_t* codes)
        : m_codes(_mm_loadu_si128(reinterpret_cast<const __m128i*>(codes))) {}

    /// One bit per candidate, set if the three vertices share neither a column gap nor a row gap.
    static unsigned apart(const CodeGroup& a, const CodeGroup& b, const CodeGroup& c) {
        const __m128i beside = _mm_set1_epi32(static_cast<int>(kBesideASample));
        const __m128i differences = _mm_or_si128(
            _mm_or_si128(_mm_xor_si128(a.m_codes, b.m_codes), _mm_xor_si128(a.m_codes, c.m_codes)),
            _mm_and_si128(a.m_codes, beside));
        const __m128i none = _mm_setzero_si128();
        const __m128i sameHalves = _mm_cmpeq_epi16(differences, none);
        const __m128i isApart = _mm_cmpeq_epi32(sameHalves, none);
        return static_cast<unsigned>(_mm_movemask_ps(_mm_castsi128_ps(isApart)));
    }

 private:
    __m128i m_codes;
};
#else
class CodeGroup {
 public:
    explicit CodeGroup(const std::uint32_t* codes) : m_codes(codes) {}

    static unsigned apart(const CodeGroup& a, const CodeGroup& b, const CodeGroup& c) {
        unsigned bits = 0;
        for (unsigned k = 0; k < kGroupSize; ++k) {
            const std::uint32_t differences = (a.m_codes[k] ^ b.m_codes[k]) |
                                              (a.m_codes[k] ^ c.m_codes[k]) |
                                              (a.m_codes[k] & kBesideASample);
            if ((differences >> 16) != 0 && (differences & 0xffff) != 0) bits |= 1u << k;
        }
        return bits;
    }

 private:
    const std::uint32_t* m_codes;
};
#endif

bool hasCodes(const TurnedPart& part, const SampleGrid& grid) {
    return part.isFinite && grid.columns.scale() && grid.rows.scale();
}

bool hasSamples(const SampleGrid& grid) {
    return grid.columns.size() > 0 && grid.rows.size() > 0;
}

void takeAll(const FlatMesh& mesh, std::vector<std::int32_t>& triangles) {
    triangles.resize(mesh.corners.size());
    for (std::size_t i = 0; i < triangles.size(); ++i) triangles[i] = static_cast<std::int32_t>(i);
}

}  // namespace

void HittableFinder::find(const FlatMesh& mesh, std::span<const TurnedPart> parts,
                          std::span<const SampleGrid> grids, HittableTriangles& triangles) {
    TESK_ASSERT(parts.size() <= kGroupSize && parts.size() <= grids.size());
    unsigned coded = 0;
    for (std::size_t k = 0; k < parts.size(); ++k) {
        triangles[k].clear();
        if (!hasSamples(grids[k])) continue;
        if (hasCodes(parts[k], grids[k])) {
            coded |= 1u << k;
        } else {
            takeAll(mesh, triangles[k]);
        }
    }
    if (coded == 0) return;
    fillCodes(mesh, parts, grids);
    const auto codesOf = [&](std::int32_t vertex) {
        return CodeGroup(m_codes.data() + static_cast<std::size_t>(vertex) * kGroupSize);
    };
    for (std::size_t i = 0; i < mesh.corners.size(); ++i) {
        const auto& [a, b, c] = mesh.corners[i];
        unsigned apart = CodeGroup::apart(codesOf(a), codesOf(b), codesOf(c)) & coded;
        for (std::size_t k = 0; apart != 0; ++k, apart >>= 1) {
            if ((apart & 1) != 0) triangles[k].push_back(static_cast<std::int32_t>(i));
        }
    }
}

void HittableFinder::fillCodes(const FlatMesh& mesh, std::span<const TurnedPart> parts,
                               std::span<const SampleGrid> grids) {
    const TurnKernels& kernels = turnKernels();
    const std::size_t count = mesh.x.size();
    m_codes.resize(count * kGroupSize);
    std::array<std::array<std::uint32_t, kVerticesPerBlock>, kGroupSize> block{};
    for (std::size_t first = 0; first < count; first += kVerticesPerBlock) {
        const std::size_t length = std::min(kVerticesPerBlock, count - first);
        for (std::size_t k = 0; k < parts.size(); ++k) {
            if (!hasCodes(parts[k], grids[k])) continue;
            kernels.cellCodes(mesh.x.data() + first, mesh.y.data() + first, mesh.z.data() + first,
                              length, parts[k].coordinates[0], parts[k].coordinates[1],
                              *grids[k].columns.scale(), *grids[k].rows.scale(), block[k].data());
        }
        std::uint32_t* codes = m_codes.data() + first * kGroupSize;
        for (std::size_t i = 0; i < length; ++i) {
            for (std::size_t k = 0; k < kGroupSize; ++k) codes[i * kGroupSize + k] = block[k][i];
        }
    }
}

}  // namespace Tesk::orient
