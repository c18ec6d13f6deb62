#include "exchange/export_walk.h"

#include "store/value_rules.h"

#include <algorithm>
#include <cstring>

namespace norva {

ExportChannel ExportChannel::Of(CNorvaFileUtil& store, int position) {
    ExportChannel channel;
    channel.position = position;
    channel.index = store.GetFileChanIndex(position);
    channel.dataType = store.GetChannelDataType(channel.index);
    channel.arraySize = store.GetChannelArraySize(channel.index);
    channel.format = ValueFormat::Of(store, channel.index);
    bool const isText = channel.dataType == DataType::kText;
    auto const characters = static_cast<std::size_t>(std::max(channel.arraySize, 0));
    channel.width = ValueWidth(channel.dataType) * (isText ? characters : 1);
    channel.storeWidth = store.GetChannelValueSize(channel.index);
    return channel;
}

CExportWalk::CExportWalk(ExportJob& job, CProgressReporter& progress)
    : m_store(*job.store),
      m_settings(job.settings),
      m_report(job.report),
      m_progress(progress),
      m_isPacked(job.store->GivesPackedValues()) {
    for (int const position : *m_settings.channels) {
        ExportChannel& channel = m_channels.emplace_back(ExportChannel::Of(m_store, position));
        channel.number = m_channels.size() - 1;
        m_report.channels.emplace_back().name = m_store.GetChannelName(channel.index);
    }
    for (ExportChannel& channel : m_channels) channel.report = &m_report.channels[channel.number];
    for (int const profile : *m_settings.lines) {
        long const kept = m_store.GetProfileLocationNum(profile, 1);
        ++m_report.lines;
        m_report.locations += static_cast<std::uint64_t>(kept);
        m_report.deletedLocations += static_cast<std::uint64_t>(m_store.GetProfileLocationNum(profile, 0) - kept);
    }
    for (int profile = 0; profile < m_store.ProfileCount; ++profile) {
        std::string name;
        long locations = 0;
        int flag = 0;
        m_store.GetProfileInfo(profile, name, locations, flag);
        if (flag != 0) ++m_report.hiddenLines;
    }
    // A failure from now on is one of this export.
    m_store.ForgetStatus();
}

long CExportWalk::Kept(ExportLine const& line) {
    long count = 0;
    Locations(line, [&count](long /*location*/) {
        ++count;
        return true;
    });
    return count;
}

bool CExportWalk::FailReading() {
    m_failure = m_store.LastStatus();
    return false;
}

bool CExportWalk::Read(ExportChannel const& channel, ExportLine const& line, long location) {
    if (!m_value.Read(m_store, channel.index, line.profile, location)) {
        ++channel.report->notGiven;
        return FailReading();
    }
    ++channel.report->values;
    if (channel.storeWidth > channel.width && channel.dataType != DataType::kText) {
        channel.report->laterElements += channel.storeWidth / channel.width - 1;
    }
    return true;
}

bool CExportWalk::ReadBlock(ExportChannel const& channel, ExportLine const& line, long first, long count) {
    // A toolkit that stops the work does so here.
    m_untold += count;
    if (m_untold >= kLocationsATurn) {
        m_progress.Window().StillWorking();
        m_untold = 0;
    }
    std::size_t const stride = channel.storeWidth;
    std::size_t const width = channel.width;
    m_block.resize(static_cast<std::size_t>(count) * stride);
    if (m_store.ReadColumn(channel.index, line.profile, first, count, m_block.data()) == 0) {
        FailReading();
        // A file that lacks values must not pass for a whole one.
        if (m_failure) m_failure = Status::Failure("Couldn't read the store", m_store.GetNorvaFileName());
        return false;
    }
    bool const isWhole = m_store.GetProfileLocationNum(line.profile, 1) == line.locations;
    m_kept = m_block.size();
    if (!isWhole || stride != width) {
        m_kept = 0;
        for (long j = 0; j < count; ++j) {
            if (!isWhole && m_store.IsLocMarkedToDelete(line.profile, first + j) != 0) continue;
            std::memmove(m_block.data() + m_kept, m_block.data() + static_cast<std::size_t>(j) * stride, width);
            m_kept += width;
        }
    }
    std::uint64_t const values = m_kept / width;
    channel.report->values += values;
    channel.report->laterElements += values * (stride / width - 1);
    return true;
}

}  // namespace norva
