#pragma once

#include <cstdint>
#include <mutex>
#include <utility>

#include "TeskMeshData/MeshKernel.h"
#include "TeskPartFiles/PartFiles.h"
#include "c/Guard.h"

/// What every handle is, so that one function can free them all, and a host whose language has no
/// types for handles learns that it mixed them up.
struct tesk_object {
    enum class Kind : std::uint32_t { kMesh = 0x6d657368, kPart = 0x70617274 };

    explicit tesk_object(Kind k) : kind(k) {}
    virtual ~tesk_object() = default;
    tesk_object(const tesk_object&) = delete;
    tesk_object& operator=(const tesk_object&) = delete;

    const Kind kind;
};

struct tesk_mesh : tesk_object {
    static constexpr Kind kKind = Kind::kMesh;

    explicit tesk_mesh(MeshKernel k) : tesk_object(kKind), kernel(std::move(k)) {}

    mutable MeshKernel kernel;
    /// Held while a ranking refreshes topology and normals inside the kernel, which nothing else
    /// reads. Never held during a callback: a host may use the mesh in there.
    mutable std::mutex refreshing;
};

struct tesk_part : tesk_object {
    static constexpr Kind kKind = Kind::kPart;

    explicit tesk_part(Tesk::PartFile f) : tesk_object(kKind), file(std::move(f)) {}

    Tesk::PartFile file;
};

namespace Tesk::c {

/// Throws CallError unless a handle of the right kind is given.
template <class Handle>
void needHandle(const Handle* handle, const char* name) {
    need(handle, name);
    if (handle->kind != Handle::kKind) refuse(std::string(name) + " is a handle of another kind");
}

}  // namespace Tesk::c
