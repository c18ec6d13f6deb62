#include "norva/file_util.h"

#include "platform/files.h"
#include "platform/last_error.h"
#include "store/store_reader.h"
#include "store/store_sort.h"
#include "store/store_structure.h"
#include "store/store_writer.h"
#include "store/value_rules.h"

#include <new>
#include <typeinfo>
#include <utility>

namespace norva {

namespace {

/// Writing the older contents with their marks over newer ones would lose these.
constexpr char const* kReplaced = "another store has taken its name since it was opened";

}  // namespace

struct CNorvaFileUtil::Impl {
    std::string path;
    std::unique_ptr<CStoreReader> reader;  ///< of an open store
    std::unique_ptr<CStoreWriter> writer;  ///< of a store being written, until it is complete
    CStoreStructure written;               ///< what the writer writes
    bool profilesSaved = false;
    bool channelsSaved = false;
    bool started = false;
    bool changed = false;  ///< marks or flags differ from the file
    Status last;           ///< of the last operation

    CStoreStructure const& Structure() const { return reader != nullptr ? reader->Structure() : written; }

    StoreChannel const* Channel(int index) const {
        auto const& channels = Structure().channels;
        bool const isThere = index >= 0 && static_cast<std::size_t>(index) < channels.size();
        return isThere ? &channels[static_cast<std::size_t>(index)] : nullptr;
    }
    StoreProfile const* Profile(int index) const {
        auto const& profiles = Structure().profiles;
        bool const isThere = index >= 0 && static_cast<std::size_t>(index) < profiles.size();
        return isThere ? &profiles[static_cast<std::size_t>(index)] : nullptr;
    }
    /// Of the open store; null when there is no such location.
    StoreProfile* ProfileAt(int profile, long location) {
        if (reader == nullptr || profile < 0) return nullptr;
        auto& profiles = reader->Structure().profiles;
        if (static_cast<std::size_t>(profile) >= profiles.size()) return nullptr;
        StoreProfile& found = profiles[static_cast<std::size_t>(profile)];
        return location >= 0 && location < found.locations ? &found : nullptr;
    }

    /// Every operation that can fail begins so: an older failure is not its own.
    void Begin() {
        if (!last) last = {};
    }
    int Fail(char const* what, std::string const& reason) {
        last = Status::Failure(what, path, reason);
        ClearLastErrorText();
        SetLastErrorText(last.Text());
        return 0;
    }
    int FailOpening(std::string const& reason) { return Fail("Couldn't open the store", reason); }
    int FailReading(std::string const& reason) { return Fail("Couldn't read the store", reason); }
    int FailChanging(std::string const& reason) { return Fail("Couldn't change the store", reason); }
    /// The last error keeps a reason that was found before: one in the files that feed the store explains more.
    int FailWriting(std::string const& reason) {
        last = Status::Failure("Couldn't write the store", path, reason);
        SetLastErrorText(last.Text());
        return 0;
    }

    int Open(std::string const& newPath);
    int Create(std::string const& newPath);
    int Save();
    int Close();
    int AddChannel(NorvaChannelStruct channel);
    bool IsDescribing(bool isSaved);
};

int CNorvaFileUtil::Impl::Open(std::string const& newPath) {
    path = newPath;
    auto opened = std::make_unique<CStoreReader>();
    std::string reason;
    if (!opened->Open(path, reason)) return FailOpening(reason);
    reader = std::move(opened);
    return 1;
}

int CNorvaFileUtil::Impl::Create(std::string const& newPath) {
    path = newPath;
    if (path.empty() || IsFolder(path)) {
        return Fail("Couldn't create the store", path.empty() ? "it has no name" : "a folder has that name");
    }
    auto created = std::make_unique<CStoreWriter>();
    if (!created->Open(path)) return Fail("Couldn't create the store", created->Reason());
    writer = std::move(created);
    return 1;
}

int CNorvaFileUtil::Impl::Save() {
    if (reader == nullptr || !changed) return 1;
    if (!reader->IsCurrent()) return FailChanging(kReplaced);
    try {
        std::string reason;
        if (!WriteStoreAnew(*reader, path, reason)) return FailChanging(reason);
    } catch (std::bad_alloc const&) {
        return FailChanging("not enough memory");
    }
    changed = false;
    return 1;
}

int CNorvaFileUtil::Impl::Close() {
    int const saved = Save();
    reader.reset();
    writer.reset();
    written = {};
    profilesSaved = channelsSaved = started = changed = false;
    return saved;
}

/// Whether the structure may still be described; tells why when not.
bool CNorvaFileUtil::Impl::IsDescribing(bool isSaved) {
    if (writer == nullptr) {
        FailWriting("it is not open for writing");
    } else if (isSaved || started) {
        writer->Fail("profiles and channels were described after they were saved");
        FailWriting(writer->Reason());
    } else {
        return true;
    }
    return false;
}

int CNorvaFileUtil::Impl::AddChannel(NorvaChannelStruct channel) {
    if (!IsDescribing(channelsSaved)) return 0;
    if (channel.dataType == DataType::kSkipped) return 1;
    std::string reason;
    if (written.AddChannel(std::move(channel), reason)) return 1;
    writer->Fail(reason);
    return FailWriting(reason);
}

CNorvaFileUtil::CNorvaFileUtil() : m_impl(std::make_unique<Impl>()) {}

CNorvaFileUtil::~CNorvaFileUtil() = default;

int CNorvaFileUtil::SetFileName(std::string const& path, EETFileMode mode, CWindow* /*owner*/) {
    if (CNorvaFileUtil::CloseCurFile() == 0) return 0;
    ClearLastErrorText();
    try {
        if (mode == kCreateStore) return m_impl->Create(path);
        if (mode != kReopenStore) return m_impl->FailOpening("the mode is unknown");
        int const opened = m_impl->Open(path);
        ProfileCount = static_cast<int>(m_impl->Structure().profiles.size());
        ChannelCount = static_cast<int>(m_impl->Structure().channels.size());
        return opened;
    } catch (std::bad_alloc const&) {
        return m_impl->FailOpening("not enough memory");
    }
}

std::string CNorvaFileUtil::GetNorvaFileName() const {
    return m_impl->path;
}

int CNorvaFileUtil::CloseCurFile() {
    m_impl->Begin();
    int const closed = m_impl->Close();
    ProfileCount = ChannelCount = 0;
    return closed;
}

int CNorvaFileUtil::AddProfileToStructure(std::string const& name, long locationCount) {
    m_impl->Begin();
    if (!m_impl->IsDescribing(m_impl->profilesSaved)) return 0;
    std::string reason;
    if (m_impl->written.AddProfile(name, locationCount, reason)) {
        ++ProfileCount;
        return 1;
    }
    m_impl->writer->Fail(reason);
    return m_impl->FailWriting(reason);
}

int CNorvaFileUtil::AddChannelToStructure(std::string const& name, std::string const& units, int dataType,
                                          int recordType, int arraySize, int reserved, int displayFormat, int decimals,
                                          int templateFormat) {
    m_impl->Begin();
    int const added = m_impl->AddChannel(
        {name, units, dataType, recordType, reserved, arraySize, displayFormat, decimals, templateFormat, 0});
    ChannelCount = static_cast<int>(m_impl->Structure().channels.size());
    return added;
}

int CNorvaFileUtil::AddChannelToStructure(NorvaChannelStruct const& channel) {
    m_impl->Begin();
    int const added = m_impl->AddChannel(channel);
    ChannelCount = static_cast<int>(m_impl->Structure().channels.size());
    return added;
}

int CNorvaFileUtil::SaveProfileStructure() {
    m_impl->Begin();
    if (!m_impl->IsDescribing(m_impl->profilesSaved)) return 0;
    if (!m_impl->writer->Reason().empty()) return m_impl->FailWriting(m_impl->writer->Reason());
    m_impl->profilesSaved = true;
    return 1;
}

int CNorvaFileUtil::SaveChannelStructure() {
    m_impl->Begin();
    if (!m_impl->IsDescribing(m_impl->channelsSaved)) return 0;
    if (!m_impl->writer->Reason().empty()) return m_impl->FailWriting(m_impl->writer->Reason());
    m_impl->channelsSaved = true;
    return 1;
}

int CNorvaFileUtil::StartWriteData() {
    m_impl->Begin();
    Impl& impl = *m_impl;
    if (impl.writer == nullptr) return impl.FailWriting("it is not open for writing");
    std::string reason;
    if (impl.started || !impl.profilesSaved || !impl.channelsSaved) {
        impl.writer->Fail(impl.started ? "its values were started already"
                                       : "its values cannot start before its profiles and channels are saved");
    } else if (!impl.written.Arrange(reason)) {
        impl.writer->Fail(reason);
    } else if (impl.writer->Start(impl.written)) {
        impl.started = true;
        return 1;
    }
    return impl.FailWriting(impl.writer->Reason());
}

int CNorvaFileUtil::WriteHuge(void const* buffer, std::size_t byteCount) {
    m_impl->Begin();
    if (!m_impl->started) return m_impl->FailWriting("its values are not started");
    return m_impl->writer->Append(buffer, byteCount) ? 1 : m_impl->FailWriting(m_impl->writer->Reason());
}

int CNorvaFileUtil::SaveData(int dataType, void const* value) {
    m_impl->Begin();
    if (!m_impl->started) return m_impl->FailWriting("its values are not started");
    return m_impl->writer->AppendValue(dataType, value) ? 1 : m_impl->FailWriting(m_impl->writer->Reason());
}

int CNorvaFileUtil::EndWriteData() {
    m_impl->Begin();
    Impl& impl = *m_impl;
    if (!impl.started) return impl.FailWriting("its values are not started");
    if (!impl.writer->Finish()) return impl.FailWriting(impl.writer->Reason());
    impl.writer.reset();
    impl.started = false;
    return 1;
}

int CNorvaFileUtil::SortByChannel(CWindow* /*owner*/, int channel, int /*first*/, int /*second*/, int /*third*/,
                                  int /*fourth*/) {
    m_impl->Begin();
    Impl& impl = *m_impl;
    constexpr char const* kWhat = "Couldn't sort the store";
    if (impl.reader == nullptr) return impl.Fail(kWhat, "it is not open");
    if (impl.Channel(channel) == nullptr) return impl.Fail(kWhat, "there is no such channel");
    if (!impl.reader->IsCurrent()) return impl.Fail(kWhat, kReplaced);
    try {
        std::string reason;
        if (!WriteSortedStore(*impl.reader, static_cast<std::size_t>(channel), impl.path, reason)) {
            return impl.Fail(kWhat, reason);
        }
        impl.changed = false;
        auto sorted = std::make_unique<CStoreReader>();
        if (!sorted->Open(impl.path, reason)) return impl.Fail("Couldn't open the sorted store", reason);
        impl.reader = std::move(sorted);
        return 1;
    } catch (std::bad_alloc const&) {
        return impl.Fail(kWhat, "not enough memory");
    }
}

int CNorvaFileUtil::GetProfileInfo(int profile, std::string& name, long& locationCount, int& flag) {
    StoreProfile const* const found = m_impl->Profile(profile);
    if (found == nullptr) return 0;
    name = found->name;
    locationCount = found->locations;
    flag = found->flag;
    return 1;
}

long CNorvaFileUtil::GetProfileLocationNum(int profile, int which) {
    StoreProfile const* const found = m_impl->Profile(profile);
    if (found == nullptr) return 0;
    return found->locations - (which == 1 ? found->deleted.Count() : 0);
}

int CNorvaFileUtil::IsLocMarkedToDelete(int profile, long location) {
    StoreProfile const* const found = m_impl->ProfileAt(profile, location);
    return found != nullptr && found->deleted.Has(location) ? 1 : 0;
}

int CNorvaFileUtil::GetFileChanIndex(int n) {
    return m_impl->Channel(n) != nullptr ? n : -1;
}

std::string CNorvaFileUtil::GetChannelName(int index) {
    StoreChannel const* const channel = m_impl->Channel(index);
    return channel != nullptr ? channel->description.name : std::string();
}

std::string CNorvaFileUtil::GetChannelFullName(int index) {
    StoreChannel const* const channel = m_impl->Channel(index);
    if (channel == nullptr) return {};
    NorvaChannelStruct const& description = channel->description;
    return description.units.empty() ? description.name : description.name + " (" + description.units + ")";
}

std::string CNorvaFileUtil::GetChannelUnits(int index) {
    StoreChannel const* const channel = m_impl->Channel(index);
    return channel != nullptr ? channel->description.units : std::string();
}

int CNorvaFileUtil::GetChannelDataType(int index) {
    StoreChannel const* const channel = m_impl->Channel(index);
    return channel != nullptr ? channel->description.dataType : DataType::kSkipped;
}

int CNorvaFileUtil::GetChannelRecordType(int index) {
    StoreChannel const* const channel = m_impl->Channel(index);
    return channel != nullptr ? channel->description.recordType : 0;
}

int CNorvaFileUtil::GetChannelArraySize(int index) {
    StoreChannel const* const channel = m_impl->Channel(index);
    return channel != nullptr ? channel->description.arraySize : 0;
}

int CNorvaFileUtil::GetChannelDisplayFormat(int index) {
    StoreChannel const* const channel = m_impl->Channel(index);
    return channel != nullptr ? channel->description.displayFormat : DisplayFormat::kUnset;
}

int CNorvaFileUtil::GetChannelNumDecPlaces(int index) {
    StoreChannel const* const channel = m_impl->Channel(index);
    return channel != nullptr ? channel->description.decimalPlaces : 0;
}

int CNorvaFileUtil::GetChannelTemplateFormat(int index) {
    StoreChannel const* const channel = m_impl->Channel(index);
    return channel != nullptr ? channel->description.templateFormat : -1;
}

int CNorvaFileUtil::GetData(int index, int profile, long location, float& single, double& number, int& integer,
                            long& longInteger, std::string& text, int& dataType) {
    m_impl->Begin();
    StoreProfile const* const line = m_impl->ProfileAt(profile, location);
    StoreChannel const* const channel = m_impl->Channel(index);
    if (line == nullptr || channel == nullptr) return 0;
    char const* const value = m_impl->reader->ColumnValue(static_cast<std::size_t>(index), *line, location);
    if (value == nullptr) return m_impl->FailReading(m_impl->reader->Reason());
    dataType = channel->description.dataType;
    switch (dataType) {
        case DataType::kFloat:
            single = LoadFloat(value);
            break;
        case DataType::kDouble:
            number = LoadDouble(value);
            break;
        case DataType::kText: {
            auto length = static_cast<std::size_t>(channel->columnWidth);
            while (length > 0 && value[length - 1] == ' ') --length;
            text.assign(value, length);
            break;
        }
        case DataType::kShort:
            longInteger = integer = static_cast<std::int16_t>(LoadLittle16(value));
            break;
        default:
            longInteger = integer = static_cast<std::int32_t>(LoadLittle32(value));
    }
    return 1;
}

Status CNorvaFileUtil::LastStatus() const {
    return m_impl->last;
}

void CNorvaFileUtil::ForgetStatus() {
    m_impl->Begin();
}

bool CNorvaFileUtil::GivesPackedValues() const {
    // What a subclass makes of GetData is for the subclass to say.
    return typeid(*this) == typeid(CNorvaFileUtil);
}

std::size_t CNorvaFileUtil::GetChannelValueSize(int index) {
    StoreChannel const* const channel = m_impl->Channel(index);
    return channel != nullptr ? static_cast<std::size_t>(channel->valueWidth) : 0;
}

int CNorvaFileUtil::ReadColumn(int index, int profile, long first, long count, void* buffer) {
    m_impl->Begin();
    StoreProfile const* const line = m_impl->Profile(profile);
    if (m_impl->reader == nullptr || line == nullptr || m_impl->Channel(index) == nullptr || first < 0 || count < 0 ||
        first > line->locations || count > line->locations - first) {
        return 0;
    }
    bool const isRead = m_impl->reader->ReadWhole(static_cast<std::size_t>(index), line->first + first, count, buffer);
    return isRead ? 1 : m_impl->FailReading(m_impl->reader->Reason());
}

int CNorvaFileUtil::MapColumn(int index, std::shared_ptr<void const>& owner, std::span<std::byte const>& values) {
    if (m_impl->reader == nullptr || m_impl->Channel(index) == nullptr) return 0;
    return m_impl->reader->MapWhole(static_cast<std::size_t>(index), owner, values)
               ? 1
               : m_impl->FailReading(m_impl->reader->Reason());
}

int CNorvaFileUtil::GetArrayData(int index, int profile, long location, std::vector<double>& elements) {
    m_impl->Begin();
    StoreProfile const* const line = m_impl->ProfileAt(profile, location);
    StoreChannel const* const channel = m_impl->Channel(index);
    if (line == nullptr || channel == nullptr || channel->description.dataType == DataType::kText) return 0;
    char const* value = m_impl->reader->WholeValue(static_cast<std::size_t>(index), *line, location);
    if (value == nullptr) return m_impl->FailReading(m_impl->reader->Reason());
    elements.resize(static_cast<std::size_t>(channel->valueWidth / channel->elementWidth));
    for (double& element : elements) {
        element = StoredNumber(channel->description.dataType, value);
        value += channel->elementWidth;
    }
    return 1;
}

int CNorvaFileUtil::VerifyData() {
    m_impl->Begin();
    std::string reason;
    if (m_impl->reader == nullptr) return m_impl->FailReading("it is not open");
    return m_impl->reader->Verify(reason) ? 1 : m_impl->FailReading(reason);
}

int CNorvaFileUtil::MarkLocToDelete(int profile, long location, int deleted) {
    m_impl->Begin();
    StoreProfile* const line = m_impl->ProfileAt(profile, location);
    if (line == nullptr) return m_impl->FailChanging("there is no such location to mark");
    if (line->deleted.Has(location) == (deleted != 0)) return 1;
    try {
        line->deleted.Mark(location, deleted != 0, line->locations);
    } catch (std::bad_alloc const&) {
        return m_impl->FailChanging("not enough memory for the marks");
    }
    m_impl->changed = true;
    return 1;
}

int CNorvaFileUtil::SetProfileFlag(int profile, int flag) {
    m_impl->Begin();
    if (m_impl->reader == nullptr || m_impl->Profile(profile) == nullptr) {
        return m_impl->FailChanging("there is no such profile to flag");
    }
    StoreProfile& line = m_impl->reader->Structure().profiles[static_cast<std::size_t>(profile)];
    m_impl->changed = m_impl->changed || line.flag != flag;
    line.flag = flag;
    return 1;
}

}  // namespace norva
