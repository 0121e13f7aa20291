#pragma once

#include "LibraryState.h"
#include "PatchFields.h"

#include <nlohmann/json.hpp>

#include <string>

/// Builds a library from the events of a JSON text, without a tree: nesting and size cost no more than the text.
class LibraryJsonReader final : public nlohmann::json::json_sax_t {
public:
    /// `expectedPatches` is a guess. The rows, 64 at most, must outlive the reader.
    LibraryJsonReader(qsizetype expectedPatches, PatchFields::Rows rows);

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
    [[nodiscard]] bool isId() const;
    /// Skips a number that is none.
    bool setDate(double seconds);
    [[nodiscard]] quint64 bitOf(const PatchField &field) const;
    bool markSeen();
    /// False when a field is required.
    bool fillMissing();
    /// Notes a value that no field takes; false where none may stand.
    bool skip();
    bool startContainer();

    PatchFields::Rows m_rows;
    Place m_place = Place::Start;
    std::size_t m_skippedDepth = 0; ///< open containers inside of a value that is skipped
    std::string m_libraryKey;
    const PatchField *m_field = nullptr; ///< of the value that comes next in a patch; none when not known
    bool m_hasPatches = false;
    LibraryState m_content;

    VelgorPatch m_patch{quint64(0)};
    quint64 m_patchId = 0;
    quint64 m_seenFields = 0; ///< one bit a field
};
