#include "batch/ContentHash.h"

#include <fmt/format.h>

#include <cstddef>
#include <fstream>
#include <vector>

#include "commands/Interrupt.h"

// GCC cannot inline all that the header insists on where it optimises for debugging (-Og).
#define XXH_NO_INLINE_HINTS 1
#define XXH_INLINE_ALL
#include <xxhash.h>

namespace App {

namespace {

constexpr std::size_t kPiece = 1u << 18;

std::string textOf(XXH128_hash_t hash) {
    return fmt::format("xxh128:{:016x}{:016x}", hash.high64, hash.low64);
}

}  // namespace

std::string contentHash(std::string_view bytes) {
    return textOf(XXH3_128bits(bytes.data(), bytes.size()));
}

std::optional<FileIdentity> identify(const std::filesystem::path& file) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored)) return std::nullopt;
    std::ifstream in(file, std::ios::binary);
    if (!in) return std::nullopt;
    XXH3_state_t state;
    XXH3_INITSTATE(&state);
    XXH3_128bits_reset(&state);
    std::vector<char> piece(kPiece);
    std::uint64_t size = 0;
    while (in) {
        if (Interrupt::isRequested()) return std::nullopt;
        in.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        const auto count = static_cast<std::size_t>(in.gcount());
        XXH3_128bits_update(&state, piece.data(), count);
        size += count;
    }
    if (in.bad() || !in.eof()) return std::nullopt;
    return FileIdentity{size, textOf(XXH3_128bits_digest(&state))};
}

}  // namespace App
