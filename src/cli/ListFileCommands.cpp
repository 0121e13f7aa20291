#include "Arguments.h"
#include "CommandHandlers.h"
#include "NameWarning.h"
#include "Output.h"
#include "PatchFileHandler.h"
#include "PatchWriter.h"
#include "PipedFiles.h"
#include "TextTable.h"
#include "VelgorContent.h"

#include <QCoreApplication>

#include <nlohmann/json.hpp>

namespace {

/// The context of this file's texts.
struct ListFileCommands {
    Q_DECLARE_TR_FUNCTIONS(ListFileCommands)
};

/// One at a time: a file may hold 65,535 of them.
VelgorContentPatch slotOf(const SPresetFile &file, qsizetype index)
{
    VelgorContentPatch slot(VelgorPatch(file.patches.at(index), file.userIRs.at(index), file.headerDesc));
    const BankNumber place = BankNumber::ofSlot(index);
    slot.bank = place.bank;
    slot.number = place.number;
    return slot;
}

nlohmann::ordered_json patchJson(const SPresetFile &file, qsizetype index)
{
    const VelgorContentPatch slot = slotOf(file, index);
    const SPatch &record = file.patches.at(index);
    const SUserIR &userIR = file.userIRs.at(index);
    nlohmann::ordered_json json;
    json["index"] = index;
    json["bank"] = slot.bank;
    json["number"] = slot.number;
    json["name"] = Output::jsonText(slot.patch.name);
    json["id"] = std::to_string(slot.patch.id());
    json["version"] = Output::jsonText(slot.patch.version);
    json["hasUserIR"] = slot.patch.hasUserIR;
    json["pos"] = record.pos;
    json["dataSize"] = record.data.size();
    json["userIRSize"] = userIR.size;
    json["userIRNumber"] = nullptr;
    if (slot.patch.hasUserIR) {
        json["userIRNumber"] = userIR.getFirstUInt32();
    }
    return json;
}

void printJson(const QString &path, const QByteArray &bytes, const SPresetFile &file)
{
    const quint16 computed = PatchWriter::checksumOf(file, bytes);
    nlohmann::ordered_json json;
    json["file"] = Output::jsonText(path);
    json["count"] = file.patches.size();
    json["version"] = Output::jsonText(slotOf(file, 0).patch.version);
    json["tailBit"] = file.tailBit;
    json["checksum"] = {{"stored", file.checksum}, {"computed", computed}, {"valid", file.checksum == computed}};
    json["patches"] = nlohmann::ordered_json::array();
    for (qsizetype i = 0; i < file.patches.size(); ++i) {
        json["patches"].push_back(patchJson(file, i));
    }
    Output::printJson(json);
}

void printTable(const SPresetFile &file)
{
    TextTable table({ListFileCommands::tr("Slot"), ListFileCommands::tr("Name"), ListFileCommands::tr("User IR"),
        ListFileCommands::tr("Version"), ListFileCommands::tr("Bytes"), ListFileCommands::tr("Id")});
    for (qsizetype i = 0; i < file.patches.size(); ++i) {
        const VelgorContentPatch slot = slotOf(file, i);
        table.addRow({QStringLiteral("%1.%2").arg(slot.bank).arg(slot.number), slot.patch.name,
            slot.patch.hasUserIR ? ListFileCommands::tr("user IR") : QString(), slot.patch.version,
            QString::number(file.patches.at(i).data.size()), QString::number(slot.patch.id())});
    }
    table.print();
}

} // namespace

int CommandHandlers::listFile(const Arguments &arguments)
{
    const QString path = arguments.positional().first();
    const Result<QByteArray> bytes = PipedFiles().read(path);
    if (!bytes) {
        return Output::fail(bytes.problem().in(path).text());
    }
    const Result<SPresetFile> file = SPresetFile::fromData(*bytes);
    if (!file) {
        return Output::fail(ListFileCommands::tr("%1: not a complete preset file (%2)").arg(path, file.problem().why));
    }
    if (arguments.has(QStringLiteral("json"))) {
        printJson(path, *bytes, *file);
    } else {
        printTable(*file);
    }
    return Done;
}

int CommandHandlers::copyFile(const Arguments &arguments)
{
    const std::optional<QString> output = arguments.value(QStringLiteral("output"));
    if (!output) {
        return Output::fail(ListFileCommands::tr("copy needs -o FILE"));
    }
    PipedFiles files;
    PatchFileHandler handler(files);
    const Result<SPresetFile> file = handler.read(arguments.positional().first());
    if (!file) {
        return Output::fail(file.problem().text());
    }
    NameWarning::print(arguments.positional().first(), *file);
    VelgorContent content;
    content.populate(*file);
    const Result<QString> written = handler.exportTo(content, *output);
    return written ? Done : Output::fail(written.problem().text());
}
