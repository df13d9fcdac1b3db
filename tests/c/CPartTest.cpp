#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "HostSide.h"
#include "TeskPartFiles/PartFiles.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

namespace {

namespace fs = std::filesystem;

/// A folder with a name that is not ASCII, removed at the end.
class CParts : public testing::Test {
 protected:
    CParts() {
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        m_folder = fs::path(testing::TempDir()) /
                   (std::u8string(u8"tesk-Würfel-") +
                    std::u8string(reinterpret_cast<const char8_t*>(test->name())));
        fs::remove_all(m_folder);
        fs::create_directory(m_folder);
    }
    ~CParts() override { fs::remove_all(m_folder); }

    /// The path of a file in the folder, in UTF-8.
    std::string pathOf(const char* name) const {
        const std::u8string path = (m_folder / name).u8string();
        return {path.begin(), path.end()};
    }

    fs::path m_folder;
};

Tesk::PartMesh partMeshOf(const Part& part) {
    Tesk::PartMesh mesh;
    for (const UPoint3<float>& p : part.positions) mesh.positions.push_back({p.x, p.y, p.z});
    mesh.triangles = part.triangles;
    return mesh;
}

PartHandle readBytes(const std::string& bytes, int format,
                     const tesk_read_options* options = nullptr) {
    tesk_part* part = nullptr;
    EXPECT_EQ(tesk_part_read_bytes(bytes.data(), static_cast<std::int64_t>(bytes.size()), format,
                                   options, nullptr, &part),
              TESK_OK)
        << lastError();
    return PartHandle(part);
}

void expectSameMesh(const tesk_part* part, const Tesk::PartMesh& expected) {
    tesk_mesh* mesh = nullptr;
    ASSERT_EQ(tesk_part_mesh(part, &mesh), TESK_OK);
    const MeshHandle owner(mesh);
    std::int64_t vertices = 0;
    std::int64_t triangles = 0;
    ASSERT_EQ(tesk_mesh_counts(mesh, &vertices, &triangles), TESK_OK);
    Tesk::PartMesh found;
    found.positions.resize(static_cast<std::size_t>(vertices));
    found.triangles.resize(static_cast<std::size_t>(triangles));
    ASSERT_EQ(tesk_mesh_copy_positions(mesh, &found.positions.data()->x, vertices), TESK_OK);
    ASSERT_EQ(tesk_mesh_copy_triangles(mesh, found.triangles.data()->data(), triangles), TESK_OK);
    EXPECT_TRUE(found == expected);
}

TEST_F(CParts, EveryFormatIsReadAsInCpp) {
    const Tesk::PartMesh mesh = partMeshOf(makeRandomAssembly(6));
    for (int format = TESK_STL; format <= TESK_3MF; ++format) {
        const auto same = static_cast<Tesk::PartFormat>(format);
        const std::string bytes = encodePart(mesh, same);
        const Tesk::PartFile expected = Tesk::readPart(bytes, same);
        const PartHandle part = readBytes(bytes, format);
        ASSERT_NE(part, nullptr);
        expectSameMesh(part.get(), expected.mesh);
        auto details = sized<tesk_part_details>();
        ASSERT_EQ(tesk_part_describe(part.get(), &details), TESK_OK);
        EXPECT_EQ(details.struct_size, sizeof details);
        EXPECT_EQ(details.format, format);
        EXPECT_EQ(details.form, expected.form);
        EXPECT_EQ(details.unit, expected.unit.value_or(""));
        EXPECT_EQ(details.warning_count, 0);
    }
}

TEST_F(CParts, APlacedMeshIsWrittenAndReadBack) {
    const Part part = makeBracket(30, 40, 5, 12);
    const UMatrix4<float> placement = placements().back().matrix;
    const Part placed = part.placed(placement);
    for (const char* name : {"ä.stl", "ä.obj", "ä.ply", "ä.off", "ä.3mf"}) {
        const std::string path = pathOf("") + name;
        ASSERT_EQ(tesk_part_write(path.c_str(), meshOf(part, placement).get()), TESK_OK)
            << lastError();
        tesk_part* read = nullptr;
        ASSERT_EQ(tesk_part_read(path.c_str(), nullptr, nullptr, &read), TESK_OK) << lastError();
        const PartHandle owner(read);
        expectSameMesh(read, Tesk::weld(partMeshOf(placed)));
    }
}

TEST_F(CParts, OptionsArrive) {
    const Tesk::PartMesh box = partMeshOf(makeBox({0, 0, 0}, {1, 2, 3}));
    const std::string bytes = encodePart(box, Tesk::PartFormat::kStl);
    auto options = sized<tesk_read_options>();
    options.keeps_vertices = 1;
    Tesk::ReadOptions same;
    same.weldsVertices = false;
    expectSameMesh(readBytes(bytes, TESK_STL, &options).get(),
                   Tesk::readPart(bytes, Tesk::PartFormat::kStl, same).mesh);
    options.max_triangles = 12;
    EXPECT_NE(readBytes(bytes, TESK_STL, &options), nullptr);
    options.max_triangles = 11;
    tesk_part* part = nullptr;
    EXPECT_EQ(tesk_part_read_bytes(bytes.data(), static_cast<std::int64_t>(bytes.size()), TESK_STL,
                                   &options, nullptr, &part),
              TESK_FILE_ERROR);
    EXPECT_EQ(part, nullptr);
}

TEST_F(CParts, WarningsAreThoseOfCpp) {
    const std::string bytes =
        encodePart(partMeshOf(makePrism()), Tesk::PartFormat::kStl) + "something more";
    const Tesk::PartFile expected = Tesk::readPart(bytes, Tesk::PartFormat::kStl);
    ASSERT_FALSE(expected.warnings.empty());
    const PartHandle part = readBytes(bytes, TESK_STL);
    auto details = sized<tesk_part_details>();
    ASSERT_EQ(tesk_part_describe(part.get(), &details), TESK_OK);
    ASSERT_EQ(static_cast<std::size_t>(details.warning_count), expected.warnings.size());
    for (std::int32_t i = 0; i < details.warning_count; ++i) {
        const char* code = nullptr;
        const char* text = nullptr;
        ASSERT_EQ(tesk_part_warning(part.get(), i, &code, &text), TESK_OK);
        EXPECT_EQ(code, expected.warnings[static_cast<std::size_t>(i)].code);
        EXPECT_EQ(text, expected.warnings[static_cast<std::size_t>(i)].text);
        EXPECT_EQ(tesk_part_warning(part.get(), i, nullptr, nullptr), TESK_OK);
    }
    for (const std::int32_t index : {-1, details.warning_count, INT32_MAX, INT32_MIN}) {
        const char* code = "before";
        EXPECT_EQ(tesk_part_warning(part.get(), index, &code, nullptr), TESK_INVALID_ARGUMENT);
        EXPECT_STREQ(code, "before");
    }
}

TEST_F(CParts, ObjectsHaveNames) {
    const std::string text = "o lid\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\no box\nf 3 2 1\n";
    const PartHandle part = readBytes(text, TESK_OBJ);
    auto details = sized<tesk_part_details>();
    ASSERT_EQ(tesk_part_describe(part.get(), &details), TESK_OK);
    ASSERT_EQ(details.object_count, 2);
    const char* name = nullptr;
    ASSERT_EQ(tesk_part_object(part.get(), 0, &name), TESK_OK);
    EXPECT_STREQ(name, "lid");
    ASSERT_EQ(tesk_part_object(part.get(), 1, &name), TESK_OK);
    EXPECT_STREQ(name, "box");
    EXPECT_EQ(tesk_part_object(part.get(), 2, &name), TESK_INVALID_ARGUMENT);
    EXPECT_EQ(lastError(), "index is 2; the part has 2 objects");
    EXPECT_EQ(tesk_part_object(part.get(), -1, &name), TESK_INVALID_ARGUMENT);
    EXPECT_EQ(tesk_part_object(part.get(), 0, nullptr), TESK_INVALID_ARGUMENT);
}

TEST_F(CParts, FilesThatCannotBeReadOrWrittenAreFileErrors) {
    tesk_part* part = nullptr;
    EXPECT_EQ(tesk_part_read(pathOf("none.stl").c_str(), nullptr, nullptr, &part), TESK_FILE_ERROR);
    EXPECT_NE(lastError().find("none.stl"), std::string::npos);
    EXPECT_EQ(tesk_part_read("", nullptr, nullptr, &part), TESK_FILE_ERROR);
    std::ofstream(m_folder / "broken.obj") << "v 0 0 0\nf 1 2 3\n";
    EXPECT_EQ(tesk_part_read(pathOf("broken.obj").c_str(), nullptr, nullptr, &part),
              TESK_FILE_ERROR);
    EXPECT_NE(lastError().find("line 2"), std::string::npos) << lastError();
    EXPECT_EQ(tesk_part_read_bytes("", 0, TESK_STL, nullptr, nullptr, &part), TESK_FILE_ERROR);
    EXPECT_EQ(tesk_part_read_bytes(nullptr, 0, TESK_3MF, nullptr, nullptr, &part), TESK_FILE_ERROR);
    EXPECT_EQ(part, nullptr);

    const MeshHandle mesh = meshOf(makePrism());
    EXPECT_EQ(tesk_part_write(pathOf("prism.doc").c_str(), mesh.get()), TESK_FILE_ERROR);
    EXPECT_EQ(tesk_part_write(pathOf("no/such/folder.stl").c_str(), mesh.get()), TESK_FILE_ERROR);
    EXPECT_EQ(tesk_part_write("", mesh.get()), TESK_FILE_ERROR);
}

TEST_F(CParts, APathThatIsNotUtf8DoesNoHarm) {
    tesk_part* part = nullptr;
    const tesk_status status = tesk_part_read("\xff\xfe.stl", nullptr, nullptr, &part);
    EXPECT_TRUE(status == TESK_FILE_ERROR || status == TESK_INVALID_ARGUMENT) << status;
}

}  // namespace
