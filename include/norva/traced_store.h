#pragma once

#include "norva/file_util.h"
#include "norva/trace.h"

namespace norva {

/// A store that traces the calls an import or export makes. Nothing is traced while the trace is null.
class NORVA_API CTracedStore : public CNorvaFileUtil {
public:
    void SetTrace(CTrace* trace) { m_trace = trace; }

    int SetFileName(std::string const& path, EETFileMode mode, CWindow* owner) override;
    int CloseCurFile() override;
    int AddProfileToStructure(std::string const& name, long locationCount) override;
    int AddChannelToStructure(std::string const& name, std::string const& units, int dataType, int recordType,
                              int arraySize, int reserved, int displayFormat, int decimals,
                              int templateFormat) override;
    int AddChannelToStructure(NorvaChannelStruct const& channel) override;
    int SaveProfileStructure() override;
    int SaveChannelStructure() override;
    int StartWriteData() override;
    int WriteHuge(void const* buffer, std::size_t byteCount) override;
    int SaveData(int dataType, void const* value) override;
    int EndWriteData() override;
    int SortByChannel(CWindow* owner, int channel, int first, int second, int third, int fourth) override;
    bool GivesPackedValues() const override { return true; }

private:
    CTrace* m_trace = nullptr;
};

}  // namespace norva
