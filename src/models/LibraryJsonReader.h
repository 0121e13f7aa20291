#pragma once

#include "LibraryState.h"

#include <nlohmann/json.hpp>

#include <string>

/// One field of a patch in the library file: its key and the member that holds it. Exactly one member is set,
/// except for the id and the date, which have none and are known by their keys.
struct PatchJsonField {
    const char *key = nullptr;
    QString VelgorPatch::*text = nullptr;
    bool VelgorPatch::*flag = nullptr;
};

inline constexpr std::size_t patchJsonFieldCount = 15;
/// All fields, in the order in which they are written.
const std::array<PatchJsonField, patchJsonFieldCount> &patchJsonFields();

/// Builds a library from the events of a JSON text, without a tree: nesting and size cost no more than the text.
class LibraryJsonReader final : public nlohmann::json::json_sax_t {
public:
    /// `expectedPatches` is a guess.
    explicit LibraryJsonReader(qsizetype expectedPatches);

    /// The library, once the whole text was read; nothing when it is not one.
    [[nodiscard]] std::optional<LibraryState> result() const;

    bool null() override;
    bool boolean(bool value) override;
    bool number_integer(number_integer_t value) override;
    bool number_unsigned(number_unsigned_t value) override;
    bool number_float(number_float_t value, const string_t &text) override;
    bool string(string_t &value) override;
    bool binary(binary_t &value) override;
    bool start_object(std::size_t count) override;
    bool key(string_t &name) override;
    bool end_object() override;
    bool start_array(std::size_t count) override;
    bool end_array() override;
    bool parse_error(std::size_t position, const std::string &token, const nlohmann::json::exception &error) override;

private:
    enum class Place { Start, Library, Patches, Patch, End };

    /// True when a value that no field takes may stand here: under a key that is not known, or for the default.
    [[nodiscard]] bool isSkippable() const;
    [[nodiscard]] bool isDefaultPatch() const;
    [[nodiscard]] bool isField(const char *key) const;
    bool takeDate(double seconds);
    bool markSeen();
    /// Notes a value that no field takes; false where none may stand.
    bool skip();
    bool startContainer();

    Place m_place = Place::Start;
    std::size_t m_skippedDepth = 0; ///< open containers inside of a value that is skipped
    std::string m_libraryKey;
    const PatchJsonField *m_field = nullptr; ///< of the value that comes next in a patch; none when not known
    bool m_hasPatches = false;
    LibraryState m_content;

    VelgorPatch m_patch{quint64(0)};
    quint64 m_patchId = 0;
    unsigned m_seenFields = 0; ///< one bit a field
};
