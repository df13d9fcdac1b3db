#include <cstring>
#include <string>

#include "CInterfaceSequence.h"

void Sequence::readPart() {
    std::string text =
        "o a\nv 0 0 0\nv 9 0 0\nv 0 9 0\nv 0 0 9\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n";
    const std::size_t changes = m_input.take<std::uint8_t>() % 4;
    for (std::size_t i = 0; i < changes; ++i) {
        text[m_input.take<std::uint8_t>() % text.size()] = m_input.take<char>();
    }
    text.resize(text.size() - m_input.take<std::uint8_t>() % 16);
    auto options = takeSized<tesk_read_options>(m_input);
    options.keeps_vertices = m_input.take<std::int8_t>();
    options.max_triangles = takeRarely(m_input) ? m_input.take<std::int8_t>() : 0;
    const std::vector<char> bytes(text.begin(), text.end());
    const auto format = takeRarely(m_input) ? m_input.take<std::int8_t>() : std::int8_t{TESK_OBJ};
    const auto size = takeRarely(m_input) ? -1 : static_cast<std::int64_t>(bytes.size());
    tesk_part* part = nullptr;
    const tesk_status status =
        tesk_part_read_bytes(takeRarely(m_input) ? nullptr : bytes.data(), size, format,
                             takeRarely(m_input) ? nullptr : &options, takeCall(), &part);
    keep(status, part, m_parts);
}

void Sequence::describePart() {
    const tesk_part* const part = take(m_parts);
    auto details = takeSized<tesk_part_details>(m_input);
    expect(tesk_part_describe(part, takeRarely(m_input) ? nullptr : &details));
    const char* code = nullptr;
    const char* text = nullptr;
    const auto index = takeOddly<std::int32_t>(m_input, 0);
    expect(tesk_part_warning(part, index, &code, &text));
    expect(tesk_part_object(part, index, takeRarely(m_input) ? nullptr : &code));
    m_length += code == nullptr ? 0 : std::strlen(code);
}

void Sequence::takeMeshOfPart() {
    const tesk_part* const part = take(m_parts);
    tesk_mesh* mesh = nullptr;
    const tesk_status status = tesk_part_mesh(part, &mesh);
    keep(status, mesh, m_meshes);
}

void Sequence::askVersion() {
    expect(tesk_check_abi(m_input.take<std::int8_t>()));
    expect(tesk_part_write(nullptr, take(m_meshes)));
    auto settings = takeSized<tesk_rank_settings>(m_input);
    expect(tesk_rank_settings_init(takeRarely(m_input) ? nullptr : &settings));
}
