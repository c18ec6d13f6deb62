#pragma once

#include "common/store_values.h"
#include "norva/file_util.h"

#include <QObject>
#include <QString>

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
    bool IsDeleted(int line, long location);
    /// Values of a number channel along a line, NaN for no-data; deleted locations are NaN when `hideDeleted`.
    std::vector<double> Column(int channel, int line, bool hideDeleted);
    ColumnStatistics Statistics(int channel, std::vector<int> const& lines);

    /// Both save the store at once and open it again; false with the reason.
    bool MarkDeleted(int line, std::vector<long> const& locations, bool deleted, QString& why);
    bool SetLineFlag(int line, int flag, QString& why);

signals:
    /// Lines, channels or marks are others than before.
    void Changed();

private:
    bool SaveAndReopen(QString& why);
    void ReadStructure();

    std::unique_ptr<CNorvaFileUtil> m_store;
    std::unique_ptr<CValuePrinter> m_printer;
    QString m_path;
    std::vector<LineEntry> m_lines;
    std::vector<ChannelEntry> m_channels;
};

}  // namespace norva
