#pragma once

#include "norva/column_text.h"
#include "norva/exchange.h"
#include "norva/inspection.h"

#include <QString>

#include <optional>
#include <vector>

namespace norva {

/// What a person changed about a channel of a proposal.
struct ColumnEdit {
    int source = 0;  ///< column of the file, from 0
    int part = 0;    ///< of the channels that read this column: 0 the first, 1 the second
    std::optional<std::string> name{};
    std::optional<std::string> units{};
    std::optional<ColumnType> type{};
    std::optional<int> dateTemplate{};  ///< code of a date's or time's template
};

/// One file of an import sheet: what it is, what is proposed for it, where it goes and how that went.
struct ImportItem {
    enum class State { Reading, Ready, ByHand, Refused, Waiting, Running, Done, Failed, Stopped };

    explicit ImportItem(QString path);

    /// The file is to be read as this format; "" for the one that is recognised.
    void ReadAs(std::string const& label);
    /// Reads the whole file; takes its time and touches nothing else.
    struct Look {
        Status status{};
        Inspection proposal{};
        std::vector<InspectedRow> rows{};  ///< the first
    };
    static Look LookAt(std::string const& path, std::string const& format, InspectionOptions const& told);
    void Take(Look look);

    bool HasColumns() const { return m_hasProposal && proposal.isTable; }
    /// "296 rows, 12 columns, 1 doubt"; "" before it was read and for other formats.
    QString Contents() const;
    /// Of the state, for the list.
    QString StateText() const;

    /// The edit of a channel of the proposal, which the next call of Settings() follows.
    ColumnEdit& EditOf(int channel);
    /// With what the person changed. Only where a proposal is there.
    ColumnTextSettings const& Settings() const { return m_settings; }
    /// Applies the edits anew; says why one cannot be, which is then dropped.
    Status ApplyEdits();

    ImportRequest Request() const;
    /// Imports, by the settings that suit the file where none are chosen; on any thread.
    static Status Run(ImportRequest request, ImportResult& result);
    bool WouldReplace() const;

    QString path;
    std::string format;  ///< label; "" when the file is nothing that can be read
    QString why;         ///< what in the file says so, or why it cannot be read
    QString store;
    bool replaces = false;     ///< the person wants the store of that name replaced
    InspectionOptions told{};  ///< what the person settled for the inspection
    Inspection proposal{};     ///< of a text
    std::vector<InspectedRow> rows{};
    std::vector<ColumnEdit> edits{};
    State state = State::Reading;
    ImportResult result{};  ///< of the import
    QString message;        ///< of a failure

private:
    bool m_hasProposal = false;
    ColumnTextSettings m_settings{};
};

}  // namespace norva
