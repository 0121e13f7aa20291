#include "LibraryJsonReader.h"

#include "Utf8Text.h"

#include <algorithm>
#include <utility>

LibraryJsonReader::LibraryJsonReader(qsizetype expectedPatches, PatchFields::Rows rows)
    : m_rows(rows)
{
    m_content.patches.reserve(expectedPatches);
}

std::optional<LibraryState> LibraryJsonReader::result() const
{
    return m_place == Place::End && m_hasPatches ? std::optional(m_content) : std::nullopt;
}

bool LibraryJsonReader::isSkippable() const
{
    return m_skippedDepth > 0 || (m_place == Place::Library && m_libraryKey != "patches")
        || (m_place == Place::Patch && !m_field);
}

bool LibraryJsonReader::isDefaultPatch() const
{
    return m_skippedDepth == 0 && m_place == Place::Library && m_libraryKey == "defaultPatch";
}

bool LibraryJsonReader::isId() const
{
    return m_skippedDepth == 0 && m_place == Place::Patch && m_field && !m_field->text && !m_field->flag
        && !m_field->date;
}

quint64 LibraryJsonReader::bitOf(const PatchField &field) const
{
    return quint64(1) << static_cast<quint64>(&field - m_rows.data());
}

bool LibraryJsonReader::markSeen()
{
    const quint64 field = bitOf(*m_field);
    // Of a key that stands there twice, one value is lost.
    m_content.hasUnknown = m_content.hasUnknown || (m_seenFields & field) != 0;
    m_seenFields |= field;
    return true;
}

bool LibraryJsonReader::skip()
{
    const bool isAllowed = isSkippable();
    m_content.hasUnknown = m_content.hasUnknown || isAllowed;
    return isAllowed;
}

bool LibraryJsonReader::setDate(double seconds)
{
    if (m_skippedDepth > 0 || m_place != Place::Patch || !m_field || !m_field->date) {
        return skip();
    }
    m_patch.*m_field->date = {seconds};
    return markSeen();
}

bool LibraryJsonReader::fillMissing()
{
    return std::all_of(m_rows.begin(), m_rows.end(), [this](const PatchField &field) {
        const bool isSeen = (m_seenFields & bitOf(field)) != 0;
        if (!isSeen && field.setMissing) {
            field.setMissing(m_patch);
        }
        return isSeen || field.setMissing;
    });
}

bool LibraryJsonReader::null()
{
    // For the default patch, it says that there is none.
    return isDefaultPatch() || skip();
}

bool LibraryJsonReader::boolean(bool value)
{
    if (skip()) {
        return true;
    }
    if (m_place != Place::Patch || !m_field->flag) {
        return false;
    }
    m_patch.*m_field->flag = value;
    return markSeen();
}

bool LibraryJsonReader::number_integer(number_integer_t value)
{
    return setDate(static_cast<double>(value));
}

bool LibraryJsonReader::number_unsigned(number_unsigned_t value)
{
    if (isDefaultPatch()) {
        m_content.defaultPatch = value;
        return true;
    }
    if (isId()) {
        m_patchId = value;
        return markSeen();
    }
    return setDate(static_cast<double>(value));
}

bool LibraryJsonReader::number_float(number_float_t value, const string_t &text)
{
    Q_UNUSED(text)
    return setDate(value);
}

bool LibraryJsonReader::string(string_t &value)
{
    if (skip()) {
        return true;
    }
    auto decoded = Utf8Text::decode(QByteArrayView(value.data(), static_cast<qsizetype>(value.size())));
    if (m_place != Place::Patch || !m_field->text || !decoded) {
        return false;
    }
    m_patch.*m_field->text = *std::move(decoded);
    return markSeen();
}

bool LibraryJsonReader::binary(binary_t &value)
{
    Q_UNUSED(value)
    return false;
}

bool LibraryJsonReader::startContainer()
{
    if (!skip()) {
        return false;
    }
    ++m_skippedDepth;
    return true;
}

bool LibraryJsonReader::start_object(std::size_t count)
{
    Q_UNUSED(count)
    if (m_place == Place::Start) {
        m_place = Place::Library;
        return true;
    }
    if (m_place == Place::Patches) {
        m_place = Place::Patch;
        m_patch = VelgorPatch(quint64(0));
        m_field = nullptr;
        m_seenFields = 0;
        return true;
    }
    return startContainer();
}

bool LibraryJsonReader::key(string_t &name)
{
    if (m_skippedDepth > 0) {
        return true;
    }
    if (m_place == Place::Library) {
        m_libraryKey = name;
        if (name == "defaultPatch") {
            m_content.hasUnknown = m_content.hasUnknown || m_content.defaultPatch;
            m_content.defaultPatch.reset();
        }
        return true;
    }
    // Keys mostly come in the order in which they are written.
    const PatchField *next = m_field ? m_field + 1 : m_rows.data();
    if (next != m_rows.data() + m_rows.size() && name == next->key) {
        m_field = next;
        return true;
    }
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [&name](const PatchField &field) { return name == field.key; });
    m_field = found == m_rows.end() ? nullptr : &*found;
    return true;
}

bool LibraryJsonReader::end_object()
{
    if (m_skippedDepth > 0) {
        --m_skippedDepth;
        return true;
    }
    if (m_place == Place::Patch) {
        if (!fillMissing()) {
            return false;
        }
        m_content.patches.append(std::move(m_patch).withId(m_patchId));
        m_place = Place::Patches;
        return true;
    }
    m_place = Place::End;
    return true;
}

bool LibraryJsonReader::start_array(std::size_t count)
{
    Q_UNUSED(count)
    if (m_skippedDepth == 0 && m_place == Place::Library && m_libraryKey == "patches") {
        // Of two lists, one would be lost.
        if (m_hasPatches) {
            return false;
        }
        m_place = Place::Patches;
        return true;
    }
    return startContainer();
}

bool LibraryJsonReader::end_array()
{
    if (m_skippedDepth > 0) {
        --m_skippedDepth;
        return true;
    }
    m_place = Place::Library;
    m_hasPatches = true;
    return true;
}

bool LibraryJsonReader::parse_error(
    std::size_t position, const std::string &token, const nlohmann::json::exception &error)
{
    Q_UNUSED(position)
    Q_UNUSED(token)
    Q_UNUSED(error)
    return false;
}
