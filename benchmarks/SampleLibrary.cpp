#include "SampleLibrary.h"

#include "LibraryStorageManager.h"

#include <QRandomGenerator>

#include <map>
#include <memory>

namespace {

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(u' ');
}

QString anyOf(QRandomGenerator &random, const QStringList &list)
{
    return list.at(random.bounded(list.size()));
}

QByteArray bytes(QRandomGenerator &random, int size)
{
    QByteArray result(size, '\0');
    random.generate(result.begin(), result.end());
    return result;
}

QString comment(QRandomGenerator &random)
{
    static const QStringList list =
        words("for the Bridge pickup with Neck single coils live studio quiet LOUD chorus verse solo song Band dry wet "
              "reverb Delay Größe très doux rehearsal old new bright dark MIDI pedal volume");
    QStringList text;
    for (int count = random.bounded(0, 14); count > 0; --count) {
        text.append(anyOf(random, list));
    }
    return text.join(u' ');
}

VelgorPatch patch(QRandomGenerator &random, qsizetype number)
{
    static const QStringList sounds =
        words("Glass Warm Funk Crème Tight Doom Edge Nebel Étoile Dub Slap Iron Rust Surf "
              "Jazz Blues Roots Black Polar Mörk");
    constexpr int dataSize = 1024;
    constexpr int responseSize = 8192;
    SPatch record;
    record.mrap = {'M', 'R', 'A', 'P'};
    record.name = anyOf(random, sounds) + u' ' + QString::number(number);
    record.data = bytes(random, dataSize);
    record.size = SPatch::fixedSize + dataSize;
    record.length = SPatch::sizeFieldEnd + record.size;
    SUserIR userIR;
    if (number % 3 == 0) {
        userIR.size = SUserIR::numberSize + responseSize;
        userIR.data = bytes(random, SUserIR::numberSize + responseSize);
        userIR.length = SUserIR::sizeFieldEnd + userIR.size;
    }
    SHeaderDesc header;
    header.tsrp = {'T', 'S', 'R', 'P'};
    header.pm0 = {'V', '1', '.', '2', '0'};
    VelgorPatch result(record, userIR, header);
    result.comment = comment(random);
    for (const auto flag : {&VelgorPatch::guitar, &VelgorPatch::crunch, &VelgorPatch::solo}) {
        result.*flag = random.bounded(2) == 0;
    }
    return result;
}

} // namespace

SampleLibrary &SampleLibrary::ofSize(qsizetype count)
{
    static std::map<qsizetype, std::unique_ptr<SampleLibrary>> libraries;
    std::unique_ptr<SampleLibrary> &library = libraries[count];
    if (!library) {
        library.reset(new SampleLibrary(count));
    }
    return *library;
}

SampleLibrary::SampleLibrary(qsizetype count)
{
    QRandomGenerator random(1);
    m_patches.reserve(count);
    for (qsizetype i = 0; i < count; ++i) {
        m_patches.append(patch(random, i));
    }
}

QString SampleLibrary::directory()
{
    if (!m_isWritten) {
        LibraryStorageManager(m_directory.path()).save(VelgorLibrary(m_patches, std::nullopt));
        m_isWritten = true;
    }
    return m_directory.path();
}

QString SampleLibrary::nameFragment()
{
    return QStringLiteral("éto");
}

QString SampleLibrary::threeCommentWords()
{
    return QStringLiteral("BRIDGE größe dry");
}
