#include <afxstr.h> // the framework before the Windows headers

#include "platform/win32/errortext.h"
#include "platform/win32/utf8.h"
#include "sdk/FileAccess.h"
#include "sdk/StorageFile.h"
#include "tools/vltconfig/Json.h"
#include "tools/vltconfig/Progress.h"
#include "tools/vltconfig/Store.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

namespace
{
int SetText(const WString& path, const WString& id, const WString& text)
{
    VLT::CStorageFile file(path.c_str());
    return SaveChange(file,
                      [&](VLT::CStorage& storage)
                      {
                          VLT::SetConfigurationText(storage, id.c_str(), text.c_str());
                          return true;
                      });
}

CString NoSuchRecord(const VLT::CStorageFile& file, const WString& id)
{
    return file.GetPath() + TEXT(": holds no record '") + id.c_str() + TEXT("'; 'vltconfig show' lists them");
}

/// The text that the bytes stand for; nothing, after a message, if a record cannot hold it.
std::optional<WString> TextOf(const WString& path, const std::string& bytes, bool replacesInvalid)
{
    const size_t invalid = replacesInvalid ? std::string::npos : FindInvalidUtf8(bytes);
    if (invalid != std::string::npos)
    {
        Complain(path, TEXT("not changed: byte ") + FromUtf8(std::to_string(invalid)) +
                           TEXT(" of the text is not UTF-8; --replace-invalid stores U+FFFD in its place"));
        return std::nullopt;
    }
    if (bytes.find('\0') != std::string::npos)
    {
        Complain(path, TEXT("not changed: the text holds a NUL, which no record can hold"));
        return std::nullopt;
    }
    return FromUtf8(bytes);
}

/// A file with the text, open to the user alone, removed with the object.
class CEditedFile
{
public:
    CEditedFile()
    {
        const auto now = std::chrono::system_clock::now().time_since_epoch().count();
        m_folder = std::filesystem::temp_directory_path() / std::string("vltconfig-").append(std::to_string(now));
        if (!std::filesystem::create_directory(m_folder))
            throw std::runtime_error("no folder for temporary files can be made");
        permissions(m_folder, std::filesystem::perms::owner_all);
    }
    ~CEditedFile()
    {
        std::error_code ignored;
        remove_all(m_folder, ignored);
    }
    CEditedFile(const CEditedFile&) = delete;
    CEditedFile& operator=(const CEditedFile&) = delete;

    std::filesystem::path GetPath() const { return m_folder / "text.txt"; }

private:
    std::filesystem::path m_folder;
};

template <typename Save>
int ReportSave(const VLT::CStorageFile& file, Save save)
{
    const auto saveShown = [&save]
    {
        const CProgress progress("saving");
        return save();
    };
    const bool isSaved = saveShown();
    if (!isSaved)
        return Complain(ViewOf(file.GetErrorText()));
    if (!file.GetWarningText().IsEmpty())
        Complain(TEXT("warning: ") + WString(file.GetWarningText()));
    return ExitFine;
}
} // namespace

int SaveChange(VLT::CStorageFile& file, const std::function<bool(VLT::CStorage&)>& change)
{
    return ReportSave(file, [&] { return file.Update(change); });
}

int SaveAll(VLT::CStorageFile& file, VLT::CStorage& storage)
{
    return ReportSave(file, [&] { return file.Overwrite(storage); });
}

int SetRecord(const WString& path, const WString& id, bool replacesInvalid)
{
    std::string bytes;
    if (!ReadStandardInput(bytes))
        return Complain(path, TEXT("not changed: standard input cannot be read"));
    const std::optional<WString> text = TextOf(path, bytes, replacesInvalid);
    return text ? SetText(path, id, *text) : ExitFault;
}

int RemoveRecord(const WString& path, const WString& id)
{
    VLT::CStorageFile file(path.c_str());
    return SaveChange(file,
                      [&](VLT::CStorage& storage)
                      {
                          const auto pRecord = storage.GetConfigurationById(id.c_str());
                          if (pRecord)
                              storage.RemoveConfiguration(pRecord);
                          else
                              file.SetErrorText(NoSuchRecord(file, id));
                          return pRecord != nullptr;
                      });
}

int EditRecord(const WString& path, const WString& id)
{
    VLT::CStorageFile file(path.c_str());
    VLT::CStorage storage;
    if (!file.Read(storage))
        return Complain(ViewOf(file.GetErrorText()));
    const auto pRecord = storage.GetConfigurationById(id.c_str());
    if (!pRecord)
        return Complain(ViewOf(NoSuchRecord(file, id)));
    const std::string before = ToUtf8(ViewOf(pRecord->GetCfg()));
    if (FromUtf8(before) != ViewOf(pRecord->GetCfg()))
        return Complain(path,
                        TEXT("the text holds lone surrogates, which an editor would lose; use export and import"));

    const CEditedFile edited;
    std::ofstream(edited.GetPath(), std::ios::binary) << before;
    const std::u16string editedPath = edited.GetPath().u16string();
    if (!RunEditor({editedPath.begin(), editedPath.end()}))
        return Complain(path, TEXT("not changed: the editor did not end well; VISUAL or EDITOR names another"));
    std::ifstream result(edited.GetPath(), std::ios::binary);
    std::string after{std::istreambuf_iterator<char>(result), {}};
    if (!result.is_open() || result.bad())
        return Complain(path, TEXT("not changed: what the editor saved cannot be read"));
    // Editors end the last line, whether the text did or not.
    if (!before.ends_with('\n') && after.ends_with('\n'))
        after.pop_back();
    if (after == before)
    {
        std::puts("not changed");
        return ExitFine;
    }
    const std::optional<WString> text = TextOf(path, after, false);
    return text ? SetText(path, id, *text) : ExitFault;
}

int ImportRecords(const WString& path)
{
    std::string bytes;
    if (!ReadStandardInput(bytes))
        return Complain(path, TEXT("not changed: standard input cannot be read"));
    VLT::CStorage storage;
    try
    {
        const CProgress progress("reading records");
        ReadJsonRecords(bytes,
                        [&](const WString& id, const WString& cfg)
                        {
                            const boost::shared_ptr<VLT::CConfiguration> pRecord(new VLT::CConfiguration);
                            pRecord->SetId(id.c_str());
                            pRecord->SetCfg(cfg.c_str());
                            storage.AddConfiguration(pRecord);
                        });
    }
    catch (const CJsonError& error)
    {
        return Complain(path, TEXT("not changed: ") + FromUtf8(error.what()));
    }
    VLT::CStorageFile file(path.c_str());
    return SaveAll(file, storage);
}
