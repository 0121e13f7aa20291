#include "PresetSupply.h"

#include "TestRecords.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <iterator>

namespace {

/// Few sounds and names, so that the same patch is met again, and the same sound under another name.
constexpr int sounds = 120;

QString patchName(QRandomGenerator &random)
{
    static const QStringList names{QStringLiteral("Lead"), QStringLiteral("Bells"), QStringLiteral("A/B"),
        QString::fromUtf8("Tr\u00e4ume"), QStringLiteral("exactly sixteen"), QStringLiteral("...42.prst"),
        QStringLiteral("lib-x.7.prst"), QStringLiteral(" "), QString()};
    const QString name = names.at(random.bounded(names.size()));
    return random.bounded(2) == 0 ? name : QStringLiteral("%1 %2").arg(name.left(8)).arg(random.bounded(30));
}

QByteArray listBytes(QRandomGenerator &random)
{
    QList<SPatch> patches;
    QList<SUserIR> userIRs;
    const int longest = random.bounded(4) == 0 ? 99 : 12;
    for (int count = random.bounded(1, longest + 1); count > 0; --count) {
        const int sound = random.bounded(1, sounds);
        patches.append(TestRecords::patch(patchName(random), sound));
        userIRs.append(sound % 5 == 0 ? TestRecords::userIR(static_cast<quint32>(count), sound) : SUserIR{});
    }
    return TestRecords::fileBytes(patches, userIRs, random.bounded(3) == 0 ? "V1.30" : "V1.20");
}

} // namespace

PresetSupply::PresetSupply(const QString &directory)
    : m_directory(directory)
{
    QDir().mkpath(directory);
    QList<SPatch> patches;
    for (int i = 0; i < startCount(); ++i) {
        patches.append(TestRecords::patch(QStringLiteral("Start %1").arg(i), 1000 + i));
    }
    m_startFile = write(QStringLiteral("start.prst"), TestRecords::fileBytes(patches));
}

int PresetSupply::startCount()
{
    return 6;
}

QString PresetSupply::goodFile(QRandomGenerator &random)
{
    return write(QStringLiteral("list%1.prst").arg(random.bounded(4)), listBytes(random));
}

QString PresetSupply::anyFile(QRandomGenerator &random)
{
    switch (random.bounded(10)) {
    case 0:
        return m_directory + QStringLiteral("/missing.prst");
    case 1: {
        const QByteArray bytes = listBytes(random);
        return write(QStringLiteral("cut.prst"), bytes.first(random.bounded(bytes.size())));
    }
    case 2:
    case 3: {
        const QString exported = m_directory + QStringLiteral("/out%1.prst").arg(random.bounded(2));
        return QFile::exists(exported) ? exported : goodFile(random);
    }
    default:
        return goodFile(random);
    }
}

QString PresetSupply::target(QRandomGenerator &random) const
{
    return random.bounded(8) == 0 ? m_directory + QStringLiteral("/nowhere/out.prst")
                                  : m_directory + QStringLiteral("/out%1.prst").arg(random.bounded(2));
}

QString PresetSupply::write(const QString &name, const QByteArray &bytes) const
{
    const QString path = m_directory + u'/' + name;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
    return path;
}
