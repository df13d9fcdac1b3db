#include "shapes/BoxShapes.h"

#include <cmath>
#include <numbers>

#include "TeskDataBasic/Transcendental.h"
#include "tools/TestSize.h"

namespace {

constexpr double kPi = std::numbers::pi;

void appendBox(Points& points, const UPoint3<float>& low, const UPoint3<float>& high) {
    for (int corner = 0; corner < 8; ++corner) {
        points.emplace_back((corner & 1) != 0 ? high.x : low.x, (corner & 2) != 0 ? high.y : low.y,
                            (corner & 4) != 0 ? high.z : low.z);
    }
}

/// Three components, drawn one after the other: the arguments of a call have no fixed order.
UVector3<float> randomIn(float low, float high, TestRandom& random) {
    const float x = random.in(low, high);
    const float y = random.in(low, high);
    const float z = random.in(low, high);
    return {x, y, z};
}

UVector3<double> randomDirection(TestRandom& random) {
    for (;;) {
        const UVector3<double> v = randomIn(-1, 1, random).As<double>();
        const double length = v.GetLength();
        if (length > 0.1 && length <= 1.0) return v.GetNormal();
    }
}

UPoint3<float> pointAt(const UVector3<double>& v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

}  // namespace

Points boxCorners(float x, float y, float z) {
    Points points;
    appendBox(points, {0, 0, 0}, {x, y, z});
    return points;
}

Points tetrahedronCorners() {
    return {{1, 1, 1}, {1, -1, -1}, {-1, 1, -1}, {-1, -1, 1}};
}

Points twelvePoints() {
    Points points;
    for (const float a : {-0.75f, 0.75f}) {
        for (const float b : {-1.0f, 1.0f}) {
            points.emplace_back(0.0f, a, b);
            points.emplace_back(a, b, 0.0f);
            points.emplace_back(b, 0.0f, a);
        }
    }
    return points;
}

Points wedgeCorners() {
    Points points;
    for (const float y : {0.0f, 6.0f}) {
        points.emplace_back(0.0f, y, 0.0f);
        points.emplace_back(0.0f, y, 10.0f);
        points.emplace_back(10.0f, y, 10.0f);
    }
    return points;
}

Points prismCorners(int sides, float height) {
    Points points;
    for (int i = 0; i < sides; ++i) {
        const double angle = 2.0 * kPi * i / sides;
        for (const float z : {0.0f, height}) {
            points.emplace_back(static_cast<float>(Tesk::cosine(angle)),
                                static_cast<float>(Tesk::sine(angle)), z);
        }
    }
    return points;
}

Points roundedBox(float x, float y, float z, float radius, int steps) {
    Points points;
    const UVector3<double> half(static_cast<double>(x) / 2, static_cast<double>(y) / 2,
                                static_cast<double>(z) / 2);
    for (int corner = 0; corner < 8; ++corner) {
        const UVector3<double> sign((corner & 1) != 0 ? 1 : -1, (corner & 2) != 0 ? 1 : -1,
                                    (corner & 4) != 0 ? 1 : -1);
        for (int i = 0; i <= steps; ++i) {
            for (int j = 0; j <= steps; ++j) {
                const double a = kPi / 2 * i / steps;
                const double b = kPi / 2 * j / steps;
                const UVector3<double> v(Tesk::cosine(a) * Tesk::cosine(b),
                                         Tesk::sine(a) * Tesk::cosine(b), Tesk::sine(b));
                const double r = static_cast<double>(radius);
                points.push_back(pointAt({sign.x * (half.x + r * v.x), sign.y * (half.y + r * v.y),
                                          sign.z * (half.z + r * v.z)}));
            }
        }
    }
    return points;
}

Points bracketCorners(TestRandom& random) {
    Points points;
    UPoint3<float> low(0, 0, 0);
    const int boxes = 1 + random.below(4);
    for (int i = 0; i < boxes; ++i) {
        const UPoint3<float> high = low + randomIn(0.5f, 30.0f, random);
        appendBox(points, low, high);
        low = random.below(2) == 0 ? UPoint3<float>(high.x, low.y, low.z)
                                   : UPoint3<float>(low.x, low.y, high.z);
    }
    return points;
}

Points pointsInBall(int count, TestRandom& random) {
    Points points;
    while (static_cast<int>(points.size()) < count) {
        const UVector3<float> v = randomIn(-1, 1, random);
        if (v.GetLength() <= 1.0f) points.emplace_back(v.x, v.y, v.z);
    }
    return points;
}

Points pointsOnSphere(int count, TestRandom& random) {
    Points points;
    for (int i = 0; i < count; ++i) points.push_back(pointAt(randomDirection(random)));
    return points;
}

Points pointsInCube(int count, TestRandom& random) {
    Points points;
    for (int i = 0; i < count; ++i) {
        points.push_back(UPoint3<float>() + randomIn(-1, 1, random));
    }
    return points;
}

Points pointsOnGrid(int count, int size, TestRandom& random) {
    Points points;
    for (int i = 0; i < count; ++i) {
        UPoint3<float>& p = points.emplace_back();
        for (int axis = 0; axis < 3; ++axis) p[axis] = static_cast<float>(random.below(size));
    }
    return points;
}

Points transformed(const Points& points, const UMatrix4<float>& matrix) {
    Points result;
    for (const UPoint3<float>& p : points) result.push_back(p * matrix);
    return result;
}

Points withNoise(const Points& points, double amount, TestRandom& random) {
    Points result;
    for (const UPoint3<float>& p : points) {
        const auto moved = [&](float c) {
            const double by = amount * static_cast<double>(random.in(-1, 1));
            return static_cast<float>(static_cast<double>(c) + by);
        };
        const float x = moved(p.x);
        const float y = moved(p.y);
        result.emplace_back(x, y, moved(p.z));
    }
    return result;
}

UMatrix4<float> randomTurn(TestRandom& random) {
    if (random.below(2) == 0) {
        const UPoint3<float> about = pointAt(randomDirection(random));
        const float by = random.in(0, 6.3f);
        return UMatrix4<float>::CreateRotateMatrix(by, {about.x, about.y, about.z});
    }
    // A cosine of a right angle in double, as modelling programs write it: 6e-17, not 0.
    const double angle = kPi / 2 * (1 + random.below(3));
    const int axis = random.below(3);
    UMatrix4<float> turn;
    const auto c = static_cast<float>(Tesk::cosine(angle));
    const auto s = static_cast<float>(Tesk::sine(angle));
    const int i = (axis + 1) % 3;
    const int j = (axis + 2) % 3;
    turn.at(i, i) = c;
    turn.at(i, j) = s;
    turn.at(j, i) = -s;
    turn.at(j, j) = c;
    return turn;
}

std::vector<NamedPoints> comparisonPoints(bool isSmall) {
    TestRandom random(11);
    std::vector<NamedPoints> sets = {{"Box", boxCorners(2, 3, 4)},
                                     {"Cube", boxCorners(1, 1, 1)},
                                     {"LargeBox", boxCorners(8000, 12000, 16000)},
                                     {"ThinPlate", boxCorners(100, 80, 1e-4f)},
                                     {"Tetrahedron", tetrahedronCorners()},
                                     {"TwelvePoints", twelvePoints()},
                                     {"Wedge", wedgeCorners()},
                                     {"RoundedBox", roundedBox(20, 14, 9, 2, 3)}};
    const auto add = [&](const std::string& name, const Points& points) {
        sets.push_back({name, points});
        sets.push_back({name + "Turned", transformed(points, randomTurn(random))});
    };
    for (const int sides : {3, 4, 5, 6, 7, 8, 12, 17, 30}) {
        add("Prism" + std::to_string(sides), prismCorners(sides, 2.5f));
    }
    add("RoundedBoxFine", roundedBox(30, 8, 5, 1.5f, 4));
    for (int i = 0; i < 6; ++i) {
        const std::string number = std::to_string(i);
        add("Bracket" + number, bracketCorners(random));
        sets.push_back({"Ball" + number, pointsInBall(20 + 40 * i, random)});
        sets.push_back({"Sphere" + number, pointsOnSphere(6 + 30 * i, random)});
        sets.push_back({"CubeCloud" + number, pointsInCube(10 + 50 * i, random)});
        sets.push_back({"Grid" + number, pointsOnGrid(12 + 60 * i, 3 + i, random)});
    }
    if (isSmall) return sets;
    for (const int sides : {64, 100, 256, 400}) {
        add("Prism" + std::to_string(sides), prismCorners(sides, 3.0f));
    }
    sets.push_back({"LargeSphere", pointsOnSphere(600, random)});
    sets.push_back({"LargeGrid", pointsOnGrid(3000, 12, random)});
    return sets;
}

std::vector<NamedPoints> comparisonPoints() {
    return comparisonPoints(testsAreSmall());
}

Points noisyPart(TestRandom& random) {
    Points points;
    UVector3<float> size;
    switch (random.below(4)) {
        case 0:
            size = randomIn(0.1f, 40, random);
            points = boxCorners(size.x, size.y, size.z);
            break;
        case 1:
            size = randomIn(0.05f, 5, random);
            points = prismCorners(3 + random.below(20), size.z);
            break;
        case 2:
            points = bracketCorners(random);
            break;
        default:
            size = randomIn(1, 30, random);
            points = roundedBox(size.x, size.y, size.z, size.x / 10, 1 + random.below(2));
    }
    points = transformed(points, randomTurn(random));
    if (random.below(4) == 0) return points;
    const double amount = std::pow(10.0, -1.0 - 22.0 * static_cast<double>(random.in(0, 1)));
    return withNoise(points, amount, random);
}

UMatrix4<float> nearlyRightTurn(TestRandom& random) {
    UVector3<float> axis;
    axis[random.below(3)] = 1.0f;
    const double right = kPi / 2 * (1 + random.below(3));
    const double off = std::pow(10.0, -1.0 - 9.0 * static_cast<double>(random.in(0, 1)));
    const double angle = random.below(3) == 0 ? right : right + off;
    return UMatrix4<float>::CreateRotateMatrix(static_cast<float>(angle), axis);
}

Points pointsInPlane(int count, TestRandom& random) {
    // Two whole vectors span the plane, so that no coordinate rounds.
    Points points;
    UVector3<float> u;
    UVector3<float> v;
    for (int i = 0; i < 3; ++i) u[i] = static_cast<float>(random.below(9) - 4);
    for (int i = 0; i < 3; ++i) v[i] = static_cast<float>(random.below(9) - 4);
    for (int k = 0; k < count; ++k) {
        const auto a = static_cast<float>(random.below(20));
        const auto b = static_cast<float>(random.below(20));
        const UVector3<float> p = u * a + v * b;
        points.emplace_back(p.x, p.y, p.z);
    }
    return points;
}

Points pointsOnLine(int count, TestRandom& random) {
    Points points;
    UVector3<float> u;
    for (int i = 0; i < 3; ++i) u[i] = static_cast<float>(random.below(9) - 4);
    for (int k = 0; k < count; ++k) {
        const UVector3<float> p = u * static_cast<float>(random.below(40) - 20);
        points.emplace_back(p.x, p.y, p.z);
    }
    return points;
}

Points needle(int count, TestRandom& random) {
    // Down to the grid's own step, and below.
    const double width = std::pow(10.0, -2.0 - 8.0 * static_cast<double>(random.in(0, 1)));
    Points points;
    for (int k = 0; k < count; ++k) {
        const float along = random.in(-20, 20);
        points.emplace_back(along, along * 0.5f, -along);
    }
    return withNoise(points, width, random);
}
