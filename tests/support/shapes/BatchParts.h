#pragma once

#include <filesystem>
#include <string>

/// A closed surface of 4 * rings * (rings - 1) triangles as a binary STL: a ball with bumps that
/// the seed decides.
std::string bumpyBall(int rings, unsigned seed);

/// Small parts of which no two are equal, as part00000.stl and on, in three folders below one.
///
/// @param rings  of the smallest; others have up to three more
void makeParts(const std::filesystem::path& folder, int count, int rings = 4);
