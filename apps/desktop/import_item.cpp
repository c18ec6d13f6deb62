#include "import_item.h"

#include "common/known_kind.h"
#include "common/proposed_columns.h"
#include "common/report_text.h"
#include "control_views.h"
#include "norva/formats.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <utility>

namespace norva {

namespace {

constexpr std::size_t kRowsShown = 200;
constexpr std::size_t kPlacesKept = 1000;  ///< of each finding
constexpr int kEveryFormat = 1;            ///< level of the format list that has every format once

QString Say(char const* text) {
    return QCoreApplication::translate("ImportItem", text);
}

/// Files that are texts themselves, whose rows can be shown.
bool HasRows(std::string const& label) {
    constexpr std::array<std::string_view, 4> labels = {"ASCII XYZ", "ASCII CSV", "ASCII GEM", "Scintrex CG5"};
    return std::ranges::find(labels, label) != labels.end();
}

bool NeedsColumns(std::string const& label) {
    for (ImportFormatInfo const& format : ListImportFormats(kEveryFormat)) {
        if (format.label == label) return format.settings == SettingsKind::Records;
    }
    return false;
}

QString StoreBeside(QString const& path) {
    QFileInfo const file(path);
    QString const store = file.dir().filePath(file.completeBaseName() + ".nvt");
    return store == path ? store + ".nvt" : store;
}

}  // namespace

ImportItem::ImportItem(QString file) : path(std::move(file)), store(StoreBeside(path)) {
    ReadAs({});
}

void ImportItem::ReadAs(std::string const& label) {
    RecognizedFormat const recognized = RecognizeImportFormat(path.toStdString());
    format = label.empty() ? recognized.label : label;
    why = label.empty() || label == recognized.label ? ToQString(recognized.reason) : Say("as you say");
    m_hasProposal = HasProposal(format);
    edits.clear();
    rows.clear();
    told = {};
    proposal = {};
    state = recognized.code == 0   ? State::Refused
            : NeedsColumns(format) ? State::ByHand
            : m_hasProposal        ? State::Reading
                                   : State::Ready;
    message.clear();
    if (state == State::ByHand && label.empty()) {
        QFile file(path);
        std::string const start = file.open(QIODevice::ReadOnly) ? file.read(64).toStdString() : std::string();
        if (std::string_view const kind = KnownKind(start); !kind.empty()) {
            state = State::Refused;
            why = Say("it is ") + ToQString(kind);
        }
    }
    if (state == State::Refused) {
        format.clear();
        message = why;
    }
}

ImportItem::Look ImportItem::LookAt(std::string const& path, std::string const& format, InspectionOptions const& told) {
    Look look;
    look.status = InspectFile(path, format, told, look.proposal);
    if (look.status && look.proposal.isTable && HasRows(format)) {
        look.status = ReadFirstRows(path, look.proposal.settings, kRowsShown, look.rows);
    }
    return look;
}

void ImportItem::Take(Look look) {
    proposal = std::move(look.proposal);
    rows = std::move(look.rows);
    if (!look.status) {
        state = State::Refused;
        message = ToQString(look.status.Text());
        return;
    }
    if (!proposal.isTable) {
        state = State::ByHand;
        message = Say("does not read as a table");
        return;
    }
    state = State::Ready;
    if (Status const status = ApplyEdits(); !status) message = ToQString(status.Text());
}

QString ImportItem::Contents() const {
    if (!m_hasProposal || !proposal.isTable) return {};
    std::string text =
        Counted(proposal.counts.rows, "row") + ", " + Counted(proposal.settings.columns.size(), "column");
    if (std::size_t const doubts = proposal.Doubts(); doubts > 0) text += ", " + Counted(doubts, "doubt");
    return ToQString(text);
}

QString ImportItem::StateText() const {
    switch (state) {
        case State::Reading:
            return Say("reading...");
        case State::Ready:
            return WouldReplace() && !replaces ? Say("a store of this name is there") : Say("ready");
        case State::ByHand:
            return message.isEmpty() ? Say("needs its columns: by hand") : message + Say(": by hand");
        case State::Waiting:
            return Say("waiting");
        case State::Running:
            return Say("importing...");
        case State::Done:
            return ToQString(ReportSummary(result.report)).section('\n', 0, 0);
        case State::Stopped:
            return Say("stopped");
        default:
            return message;
    }
}

ColumnEdit& ImportItem::EditOf(int channel) {
    auto const& readings = proposal.settings.columnReadings;
    int const source = readings.at(static_cast<std::size_t>(channel)).source;
    int const part = static_cast<int>(std::count_if(readings.begin(), readings.begin() + channel,
                                                    [source](auto& one) { return one.source == source; }));
    for (ColumnEdit& edit : edits) {
        if (edit.source == source && edit.part == part) return edit;
    }
    ColumnEdit& edit = edits.emplace_back();
    edit.source = source;
    edit.part = part;
    return edit;
}

Status ImportItem::ApplyEdits() {
    m_settings = proposal.settings;
    Status result;
    for (ColumnEdit& edit : edits) {
        int channel = -1;
        int part = 0;
        for (std::size_t i = 0; i < m_settings.columnReadings.size(); ++i) {
            if (m_settings.columnReadings[i].source == edit.source && part++ == edit.part)
                channel = static_cast<int>(i);
        }
        if (channel < 0) continue;
        NorvaChannelStruct& column = m_settings.columns[static_cast<std::size_t>(channel)];
        if (edit.type) {
            if (Status status = SetProposedType(m_settings, channel, *edit.type); !status) {
                edit.type.reset();
                result = std::move(status);
            } else if (edit.type == ColumnType::Date && !edit.dateTemplate) {
                edit.dateTemplate = column.templateFormat;  // the order of its parts has to be known
            }
        }
        if (edit.dateTemplate) {
            if (Status status = SetProposedTemplate(m_settings, channel, *edit.dateTemplate); !status) {
                edit.dateTemplate.reset();  // it is no date any more
            }
        }
        if (edit.name) column.name = *edit.name;
        if (edit.units) column.units = *edit.units;
    }
    return result;
}

bool ImportItem::WouldReplace() const {
    return QFileInfo::exists(store);
}

ImportRequest ImportItem::Request() const {
    ImportRequest request;
    request.inputPath = path.toStdString();
    request.storePath = store.toStdString();
    request.format = format;
    if (m_hasProposal) request.settings = m_settings;
    request.replace = replaces;
    request.places = kPlacesKept;
    return request;
}

Status ImportItem::Run(ImportRequest request, ImportResult& result) {
    bool const isOpen = std::holds_alternative<std::monostate>(request.settings);
    if (isOpen) {
        if (Status status = ProposeSettings(request.inputPath, request.format, request.settings); !status)
            return status;
    }
    return ImportFile(request, result);
}

}  // namespace norva
