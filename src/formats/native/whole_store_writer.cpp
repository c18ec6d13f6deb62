#include "formats/native/whole_store_writer.h"

#include "exchange/export_walk.h"

#include <algorithm>
#include <utility>

namespace norva {

namespace {

constexpr std::size_t kBlockBytes = std::size_t{256} * 1024;

}  // namespace

NorvaChannelStruct DescribedChannel(CNorvaFileUtil& store, int index) {
    NorvaChannelStruct channel;
    channel.name = store.GetChannelName(index);
    channel.units = store.GetChannelUnits(index);
    channel.dataType = store.GetChannelDataType(index);
    channel.recordType = store.GetChannelRecordType(index);
    channel.arraySize = store.GetChannelArraySize(index);
    channel.displayFormat = store.GetChannelDisplayFormat(index);
    channel.decimalPlaces = store.GetChannelNumDecPlaces(index);
    channel.templateFormat = store.GetChannelTemplateFormat(index);
    return channel;
}

Status CWholeStoreWriter::Refused(std::string reason) const {
    return Status::Failure("Couldn't write the file", m_path, std::move(reason));
}

Status CWholeStoreWriter::Failed() const {
    return m_unread ? Refused(m_writer.Reason()) : m_unread;
}

Status CWholeStoreWriter::Open(std::string const& path) {
    m_path = path;
    if (m_writer.Open(path)) return {};
    return Failed().Silent();
}

Status CWholeStoreWriter::Describe(ExportJob const& job) {
    std::string reason;
    for (int const profile : m_lines) {
        std::string name;
        long locations = 0;
        int flag = 0;
        m_store.GetProfileInfo(profile, name, locations, flag);
        if (!m_structure.AddProfile(std::move(name), locations, reason)) return Refused(std::move(reason));
        StoreProfile& added = m_structure.profiles.back();
        added.flag = flag;
        if (m_store.GetProfileLocationNum(profile, 1) == locations) continue;
        for (long location = 0; location < locations; ++location) {
            added.deleted.Mark(location, m_store.IsLocMarkedToDelete(profile, location) != 0, locations);
        }
    }
    // A file without the elements of its arrays gives the first ones alone.
    bool hasElements = true;
    for (int const position : *job.settings.channels) {
        int const index = m_store.GetFileChanIndex(position);
        if (!m_structure.AddChannel(DescribedChannel(m_store, index), reason)) return Refused(std::move(reason));
        hasElements = hasElements && m_structure.channels.back().valueWidth == m_store.GetChannelValueSize(index);
    }
    if (!m_structure.Arrange(reason)) return Refused(std::move(reason));
    if (!hasElements) m_structure.KeepFirstElements();
    return m_writer.Start(m_structure) ? Status() : Failed();
}

bool CWholeStoreWriter::WriteLine(int index, int profile, long locations) {
    std::size_t const width = m_store.GetChannelValueSize(index);
    auto const atOnce = static_cast<long>(std::max<std::size_t>(kBlockBytes / width, 1));
    for (long first = 0; first < locations; first += atOnce) {
        long const count = std::min(atOnce, locations - first);
        m_block.resize(static_cast<std::size_t>(count) * width);
        if (m_store.ReadColumn(index, profile, first, count, m_block.data()) == 0) {
            m_unread = m_store.LastStatus();
            if (m_unread) m_unread = Status::Failure("Couldn't read the store", m_store.GetNorvaFileName());
            return false;
        }
        if (!m_writer.Append(m_block.data(), m_block.size())) return false;
    }
    return true;
}

Status CWholeStoreWriter::Write(ExportJob& job, std::vector<int> const& offered) {
    ExportWindow shown(job.outputPath);
    // Counts what is written, hidden lines and deleted locations too: nothing is left out.
    CExportWalk walk(job, shown.progress);
    job.report.hiddenLines = job.report.deletedLocations = 0;

    m_lines = *job.settings.lines;
    for (int profile = 0; profile < m_store.ProfileCount; ++profile) {
        if (!std::ranges::binary_search(offered, profile)) m_lines.push_back(profile);
    }
    if (Status status = Describe(job); !status) return status;
    job.report.lines = m_lines.size();
    job.report.locations = static_cast<std::uint64_t>(m_structure.Locations());
    for (ExportChannel const& channel : walk.Channels()) {
        channel.report->values = job.report.locations;
        for (std::size_t i = 0; i < m_lines.size(); ++i) {
            shown.progress.FilePercent(static_cast<long long>(i * 100 / m_lines.size()));
            walk.ChannelPercent(channel.number);
            if (!WriteLine(channel.index, m_lines[i], m_structure.profiles[i].locations)) return Failed();
        }
    }
    return m_writer.Finish() ? Status() : Failed();
}

}  // namespace norva
