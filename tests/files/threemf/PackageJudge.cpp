#include "threemf/PackageJudge.h"

#include <Model/COM/NMR_DLLInterfaces.h>

#include <memory>
#include <stdexcept>

namespace {

void expect(LIB3MFRESULT result, const char* what) {
    if (result != 0) throw std::runtime_error(std::string("lib3mf: ") + what);
}

using Object = NMR::PLib3MFBase;

struct Release {
    void operator()(Object* instance) const { NMR::lib3mf_release(instance); }
};
using Handle = std::unique_ptr<Object, Release>;

/// What a function of the library returns through its last argument.
template <class Function, class... Arguments>
Handle made(const char* what, Function function, Arguments... arguments) {
    Object* instance = nullptr;
    expect(function(arguments..., &instance), what);
    return Handle(instance);
}

/// The library keeps the transposed matrix.
std::array<float, 12> cellsOf(const NMR::MODELTRANSFORM& transform) {
    std::array<float, 12> cells{};
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t col = 0; col < 3; ++col) {
            cells[row * 3 + col] = transform.m_fFields[col][row];
        }
    }
    return cells;
}

std::array<double, 3> moved(const std::array<double, 3>& p, const std::array<float, 12>& m) {
    std::array<double, 3> q{};
    for (std::size_t k = 0; k < 3; ++k) {
        q[k] = p[0] * m[k] + p[1] * m[3 + k] + p[2] * m[6 + k] + m[9 + k];
    }
    return q;
}

void appendMesh(Object* object, JudgedItem& item) {
    const auto base = static_cast<std::uint32_t>(item.positions.size());
    DWORD count = 0;
    expect(NMR::lib3mf_meshobject_getvertexcount(object, &count), "vertices");
    for (DWORD i = 0; i < count; ++i) {
        NMR::MODELMESHVERTEX vertex;
        expect(NMR::lib3mf_meshobject_getvertex(object, i, &vertex), "vertex");
        const auto& p = vertex.m_fPosition;
        item.positions.push_back({p[0], p[1], p[2]});
    }
    expect(NMR::lib3mf_meshobject_gettrianglecount(object, &count), "triangles");
    for (DWORD i = 0; i < count; ++i) {
        NMR::MODELMESHTRIANGLE triangle;
        expect(NMR::lib3mf_meshobject_gettriangle(object, i, &triangle), "triangle");
        const auto& v = triangle.m_nIndices;
        item.triangles.push_back({base + v[0], base + v[1], base + v[2]});
    }
}

void append(Object* object, JudgedItem& item) {
    BOOL isMesh = 0;
    expect(NMR::lib3mf_object_ismeshobject(object, &isMesh), "kind of object");
    if (isMesh) return appendMesh(object, item);
    DWORD count = 0;
    expect(NMR::lib3mf_componentsobject_getcomponentcount(object, &count), "components");
    for (DWORD i = 0; i < count; ++i) {
        const Handle component =
            made("component", NMR::lib3mf_componentsobject_getcomponent, object, i);
        const Handle inner =
            made("its object", NMR::lib3mf_component_getobjectresource, component.get());
        NMR::MODELTRANSFORM transform;
        expect(NMR::lib3mf_component_gettransform(component.get(), &transform), "its transform");
        const std::size_t first = item.positions.size();
        append(inner.get(), item);
        for (std::size_t k = first; k < item.positions.size(); ++k) {
            item.positions[k] = moved(item.positions[k], cellsOf(transform));
        }
    }
}

}  // namespace

std::vector<JudgedItem> judgedItems(const std::string& package) {
    const Handle model = made("model", NMR::lib3mf_createmodel);
    const Handle reader = made("reader", NMR::lib3mf_model_queryreader, model.get(), "3mf");
    std::vector<BYTE> bytes(package.begin(), package.end());
    if (NMR::lib3mf_reader_readfrombuffer(reader.get(), bytes.data(), bytes.size()) != 0) {
        DWORD code = 0;
        LPCSTR text = nullptr;
        NMR::lib3mf_getlasterror(reader.get(), &code, &text);
        throw std::runtime_error(std::string("lib3mf: ") + text);
    }
    const Handle items = made("items", NMR::lib3mf_model_getbuilditems, model.get());
    std::vector<JudgedItem> all;
    for (;;) {
        BOOL hasNext = 0;
        expect(NMR::lib3mf_builditemiterator_movenext(items.get(), &hasNext), "next item");
        if (!hasNext) return all;
        const Handle item = made("item", NMR::lib3mf_builditemiterator_getcurrent, items.get());
        NMR::MODELTRANSFORM transform;
        expect(NMR::lib3mf_builditem_getobjecttransform(item.get(), &transform), "transform");
        all.emplace_back().transform = cellsOf(transform);
        const Handle object = made("object", NMR::lib3mf_builditem_getobjectresource, item.get());
        append(object.get(), all.back());
    }
}
