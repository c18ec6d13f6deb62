#pragma once

#include "norva/api.h"
#include "norva/status.h"
#include "norva/values.h"
#include "norva/window.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace norva {

/// Mode of CNorvaFileUtil::SetFileName.
enum EETFileMode : int {
    kReopenStore = 0,  ///< an existing store, for reading, marking and sorting
    kCreateStore = 1,  ///< a new store, for writing
};

/// A store of survey data in one file, "docs/store-format.md".
///
/// A *profile* is one line of the survey: a name and a number of locations. A *location* is a place of measurement on
/// it. A *channel* is one quantity, measured at every location of every profile: a name, units, a type. (EET and UAC in
/// names that are fixed are the store file and the host's user-account helpers, nothing more.)
///
/// Writing: SetFileName(path, kCreateStore), every profile, every channel, SaveProfileStructure,
/// SaveChannelStructure, StartWriteData, then per channel, in the order described, its values profile by profile
/// (WriteHuge or SaveData), EndWriteData, CloseCurFile. The file takes its name only in EndWriteData/CloseCurFile,
/// once complete; until then an older store of that name stays as it was, and a store that is closed early, or
/// destroyed, leaves nothing behind.
///
/// Every operation returns 1 (or another value that is not 0) on success and 0 on failure; after a failure
/// GetLastErrorText() (norva/import_export.h) tells why. Profiles, channels and locations count from 0.
/// All operations are virtual, so that a host can stand its own store in this one's place.
class NORVA_API CNorvaFileUtil {
public:
    CNorvaFileUtil();
    CNorvaFileUtil(CNorvaFileUtil const&) = delete;
    CNorvaFileUtil& operator=(CNorvaFileUtil const&) = delete;
    virtual ~CNorvaFileUtil();

    int ProfileCount = 0;  ///< profiles of the open store
    int ChannelCount = 0;  ///< channels of the open store

    /// Opens `path`. Whatever was open before is closed first. A file that is no store, is cut short or disagrees
    /// with its own counts is refused.
    virtual int SetFileName(std::string const& path, EETFileMode mode, CWindow* owner);
    virtual std::string GetNorvaFileName() const;
    /// Closes; marks and flags that were changed are saved first. 0 when that failed.
    virtual int CloseCurFile();

    virtual int AddProfileToStructure(std::string const& name, long locationCount);
    /// Describes one channel: `name` and `units` ("" for none) of any bytes; `dataType` of DataType, for kSkipped no
    /// channel is made; `recordType` 1 for texts and arrays, else 0; `arraySize`, 1 or more, the characters of a text
    /// or the elements of an array; `reserved` 0; `displayFormat` of DisplayFormat; `decimals` written after the point,
    /// -1 for the usual 6; `templateFormat`, the code of a date, time or geographic template (norva/converters.h), -1
    /// for none.
    virtual int AddChannelToStructure(std::string const& name, std::string const& units, int dataType, int recordType,
                                      int arraySize, int reserved, int displayFormat, int decimals, int templateFormat);
    virtual int AddChannelToStructure(NorvaChannelStruct const& channel);
    virtual int SaveProfileStructure();
    virtual int SaveChannelStructure();
    virtual int StartWriteData();
    /// Appends `byteCount` bytes of packed values: little-endian, in the widths of the data types.
    virtual int WriteHuge(void const* buffer, std::size_t byteCount);
    /// Appends one value of the type: float, double, 32-bit integer (2, 3), one character (4), 16-bit integer (5).
    virtual int SaveData(int dataType, void const* value);
    /// 0 when the bytes handed over are not exactly what the profiles and channels need.
    virtual int EndWriteData();

    /// Sorts the locations of every profile in ascending order of `channel` (a channel index), stable, no-data
    /// last; every channel and every deleted mark moves along. The file is replaced as a whole. The four numbers
    /// are 1, -1, 1, -1; no other meaning is defined.
    virtual int SortByChannel(CWindow* owner, int channel, int first, int second, int third, int fourth);

    virtual int GetProfileInfo(int profile, std::string& name, long& locationCount, int& flag);
    /// All locations for which = 0, those not marked deleted for which = 1.
    virtual long GetProfileLocationNum(int profile, int which);
    virtual int IsLocMarkedToDelete(int profile, long location);
    /// Index of the n-th channel, as the calls below take it; -1 when there is none.
    virtual int GetFileChanIndex(int n);
    virtual std::string GetChannelName(int index);
    /// "Name (units)", or the name alone for a channel without units.
    virtual std::string GetChannelFullName(int index);
    virtual std::string GetChannelUnits(int index);
    virtual int GetChannelDataType(int index);
    virtual int GetChannelRecordType(int index);
    virtual int GetChannelArraySize(int index);
    virtual int GetChannelDisplayFormat(int index);
    virtual int GetChannelNumDecPlaces(int index);
    virtual int GetChannelTemplateFormat(int index);
    /// One value: 0 when there is no such channel, profile or location, else not 0, `dataType` says of which type
    /// it is, and it stands in the output of that type: 0 `single`, 1 `number`, 2, 3 and 5 both `integer` and
    /// `longInteger`, 4 `text` (without its trailing blanks). An array channel gives its first element. The other
    /// outputs are left alone. No-data is a value like any other.
    virtual int GetData(int index, int profile, long location, float& single, double& number, int& integer,
                        long& longInteger, std::string& text, int& dataType);

    /// Bytes of one location of the channel as WriteHuge took them: width of the type times the elements.
    virtual std::size_t GetChannelValueSize(int index);
    /// Copies the packed values (all elements of an array) of `count` locations from `first` on into `buffer`,
    /// which holds count * GetChannelValueSize(index) bytes. 0, and nothing said of the buffer, when out of range.
    virtual int ReadColumn(int index, int profile, long first, long count, void* buffer);
    /// All elements of one value of a numeric array channel, widened; one element for a channel that is no array.
    virtual int GetArrayData(int index, int profile, long location, std::vector<double>& elements);
    /// The packed values of a channel (all elements of an array) of all profiles, one after the other: the file itself,
    /// mapped read-only, not aligned. `values` lasts as long as `owner`, after CloseCurFile too. A store that is
    /// written anew under its name does not disturb it; a program that shortens the file in place would end this one.
    virtual int MapColumn(int index, std::shared_ptr<void const>& owner, std::span<std::byte const>& values);
    /// Reads all values and compares them with the checksums taken when they were written. 0 when they differ or cannot
    /// be read; a file without the store's own section has none to compare with.
    virtual int VerifyData();
    /// Marks a location deleted (1) or not (0); saved by CloseCurFile.
    virtual int MarkLocToDelete(int profile, long location, int deleted);
    /// Sets a profile's flag (0: shown); saved by CloseCurFile.
    virtual int SetProfileFlag(int profile, int flag);

    /// Why the last operation of this store gave 0: what failed, the path, the reason. Good after a success, and where
    /// 0 only says that there is no such value, profile or channel. Unlike GetLastErrorText() it belongs to this store
    /// alone: what the host does meanwhile with another one leaves it as it is.
    virtual Status LastStatus() const;
    /// Makes LastStatus() good, before work that is to see its own failures alone.
    virtual void ForgetStatus();
    /// Whether ReadColumn gives the same values as GetData, so that a whole column may be read at once in its place.
    /// True for this class; false for a class derived from it, which may have a GetData of its own, until that class
    /// says otherwise.
    virtual bool GivesPackedValues() const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace norva
