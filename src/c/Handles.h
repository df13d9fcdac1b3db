#pragma once

#include <memory>
#include <mutex>
#include <shared_mutex>

#include "TeskMeshData/MeshKernel.h"
#include "TeskPartFiles/PartFiles.h"

/// What every handle is, so that one function can free them all.
struct tesk_object {
    tesk_object() = default;
    virtual ~tesk_object() = default;
    tesk_object(const tesk_object&) = delete;
    tesk_object& operator=(const tesk_object&) = delete;
};

struct tesk_mesh : tesk_object {
    explicit tesk_mesh(MeshKernel k) : kernel(std::move(k)) {}

    /// Ranking and laying flat refresh tables inside the kernel: they hold the mutex alone, all else
    /// shares it.
    mutable MeshKernel kernel;
    mutable std::shared_mutex mutex;
};

struct tesk_part : tesk_object {
    explicit tesk_part(Tesk::PartFile f) : file(std::move(f)) {}

    Tesk::PartFile file;
};
