#pragma once

#include "common/store_values.h"
#include "norva/file_util.h"
#include "store_changes.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QUndoStack>

#include <memory>
#include <vector>

namespace norva {

/// One line of the open store.
struct LineEntry {
    QString name;
    long locations = 0;
    long deleted = 0;
    int flag = 0;
};

/// One channel of the open store.
struct ChannelEntry {
    int index = 0;  ///< as the store's calls take it
    QString name;
    QString units;
    QString fullName;
    QString type;
    bool isNumber = false;
    bool isArray = false;
    int displayFormat = DisplayFormat::kFixed;
    int decimals = 0;  ///< what the values need, at most those of the store
};

/// Count, extremes and spread of the values of a channel; no-data and deleted locations are left out of all but count.
struct ColumnStatistics {
    long count = 0;
    long noData = 0;
    long deleted = 0;
    double minimum = 0;
    double maximum = 0;
    double mean = 0;
    double deviation = 0;  ///< standard deviation of the population
};

/// The store that the window shows.
class CStoreDocument : public QObject {
    Q_OBJECT

public:
    CStoreDocument();

    /// False, and what was open stays open, when the file is no store; `why` says the reason.
    bool Open(QString const& path, QString& why);
    bool IsOpen() const { return m_store != nullptr; }
    QString Path() const { return m_path; }
    CNorvaFileUtil& Store() { return *m_store; }

    std::vector<LineEntry> const& Lines() const { return m_lines; }
    std::vector<ChannelEntry> const& Channels() const { return m_channels; }

    QString CellText(int channel, int line, long location);
    ChannelEntry const* FindChannel(int index) const;
    bool IsDeleted(int line, long location);
    /// Marks of a line; empty when nothing is deleted.
    std::vector<bool> DeletedMarks(int line);
    /// Values of a number channel along a line, NaN for no-data; deleted locations are NaN when `hideDeleted`.
    std::vector<double> Column(int channel, int line, bool hideDeleted);
    ColumnStatistics Statistics(int channel, std::vector<int> const& lines);

    /// Marks and flags are changes until they are saved; every call is one step of Undo().
    void MarkDeleted(int line, std::vector<long> const& locations, bool deleted);
    void SetLineFlag(int line, int flag);
    QUndoStack& Undo() { return m_undo; }
    bool HasChanges() const { return !m_undo.isClean(); }
    StoreChanges const& Changes() const { return m_changes; }
    /// Writes the changes into the store; false with the reason, and the changes stay.
    bool Save(QString& why);
    /// Whether the file is another one than was opened.
    bool WasChangedOutside() const;

signals:
    /// Marks or flags are others than before.
    void MarksChanged();

private:
    class CChangeCommand;

    void Apply(StoreChanges changes);
    void Push(QString const& text, StoreChanges changes);
    void ReadStructure();
    void ReadLines();
    int NeededDecimals(ChannelEntry const& entry, int atMost);
    void RememberFile();

    std::unique_ptr<CNorvaFileUtil> m_store;
    std::unique_ptr<CValuePrinter> m_printer;
    QString m_path;
    QDateTime m_fileTime;
    qint64 m_fileSize = 0;
    std::vector<LineEntry> m_lines;
    std::vector<ChannelEntry> m_channels;
    StoreChanges m_changes;
    QUndoStack m_undo;
};

}  // namespace norva
