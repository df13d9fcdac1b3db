#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>
#include <sstream>

#include "BoxTestSupport.h"
#include "minbox/box/BoxCandidate.h"
#include "minbox/outline/Calipers.h"
#include "plain/PlainBoxRecord.h"

/// Comparisons of plain and shipped results, bit for bit. A zero's sign counts, a NaN's kind does
/// not.

inline bool sameBits(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) ||
           std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

/// Collects the fields that differ.
class FieldComparison {
 public:
    template <class T>
    void add(const std::string& field, T plain, T shipped) {
        if (sameBits(plain, shipped)) return;
        m_text << std::hexfloat << field << ": plain " << plain << ", shipped " << shipped << "\n";
    }
    template <class T>
    void add(const std::string& field, const UVector3<T>& plain, const UVector3<T>& shipped) {
        for (int c = 0; c < 3; ++c) add(field + "." + "xyz"[c], plain[c], shipped[c]);
    }
    void add(const std::string& field, int plain, int shipped) {
        if (plain == shipped) return;
        m_text << field << ": plain " << plain << ", shipped " << shipped << "\n";
    }
    testing::AssertionResult result() const {
        if (m_text.str().empty()) return testing::AssertionSuccess();
        return testing::AssertionFailure() << m_text.str();
    }

 private:
    std::ostringstream m_text;
};

inline void addFrame(FieldComparison& fields, const PlainBoxRecord& plain,
                     const Tesk::minbox::BoxFrame& shipped) {
    fields.add("volume", plain.volume, shipped.volume);
    fields.add("origin", plain.origin, shipped.origin);
    for (std::size_t i = 0; i < 3; ++i) {
        const std::string n = std::to_string(i);
        fields.add("U" + n, plain.axes[i], shipped.axes[i]);
        fields.add("s" + n, plain.squaredLengths[i], shipped.squaredLengths[i]);
        fields.add("min" + n, plain.min[i], shipped.ranges[i].min);
        fields.add("max" + n, plain.max[i], shipped.ranges[i].max);
    }
}

inline testing::AssertionResult agree(const PlainBoxRecord& plain,
                                      const Tesk::minbox::VolumeCandidate& shipped) {
    FieldComparison fields;
    addFrame(fields, plain, shipped);
    fields.add("score", -1.0f, shipped.score);
    return fields.result();
}

inline testing::AssertionResult agree(const PlainBoxRecord& plain,
                                      const Tesk::minbox::BoxCandidate& shipped) {
    FieldComparison fields;
    addFrame(fields, plain, shipped);
    fields.add("area", plain.area, shipped.area);
    fields.add("score", plain.score, shipped.score);
    fields.add("height", plain.height, shipped.height);
    fields.add("face flag", plain.faceFlag, shipped.faceFlag);
    fields.add("direction", plain.direction, shipped.direction);
    return fields.result();
}

/// A search that finds nothing agrees with an unset record.
template <class Box>
testing::AssertionResult agree(const PlainBoxRecord& plain, const std::optional<Box>& shipped) {
    return agree(plain, shipped.value_or(Box()));
}

/// The score is left out: it is the caller's.
inline testing::AssertionResult agree(const PlainRect& plain,
                                      const Tesk::minbox::CaliperRect& shipped) {
    FieldComparison fields;
    fields.add("R0", plain.r0, shipped.axes[0]);
    fields.add("R1", plain.r1, shipped.axes[1]);
    for (std::size_t k = 0; k < 4; ++k) {
        fields.add("support " + std::to_string(k), plain.support[k], shipped.support[k]);
    }
    fields.add("q0", plain.q[0], shipped.squaredLengths[0]);
    fields.add("q1", plain.q[1], shipped.squaredLengths[1]);
    fields.add("area", plain.area, shipped.area);
    return fields.result();
}

inline testing::AssertionResult agree(const OrientedBox3& plain, const OrientedBox3& shipped) {
    FieldComparison fields;
    fields.add("center", plain.center, shipped.center);
    for (int i = 0; i < 3; ++i) {
        fields.add("axis " + std::to_string(i), plain.axis[i], shipped.axis[i]);
    }
    fields.add("extent", plain.extent, shipped.extent);
    return fields.result();
}
