#include "benchmarks/Jobs.h"
#include "benchmarks/XmlPeers.h"
#include "xml/XmlDocument.h"

#include <algorithm>
#include <malloc.h>

namespace
{
int64_t UsedMemory()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<int64_t>(info.uordblks + info.hblkhd);
}

/// The most that a document may take: a record for each element and one for the document, the spare records of growth
/// by a half or of the first reservation (two segments at most), some bytes for the allocator and the table of
/// segments, and with SetText the copy of the text.
int64_t AllowedMemory(const BenchDocument& document, Role role)
{
    if (role != Role::Ours && role != Role::OursToo)
        return 0;
    const int64_t text = role == Role::OursToo ? document.GetLength() * static_cast<int64_t>(sizeof(WCHAR)) : 0;
    constexpr int64_t segment = 65536;
    const int64_t reserved = std::min(document.GetLength() / 64 + 8, 2 * segment);
    const int64_t records = std::max((document.elements + 1) * 3 / 2, reserved);
    const int64_t segments = records / segment + 1;
    return text + records * static_cast<int64_t>(sizeof(XmlElementPosition)) + segments * 64 + 1024;
}
} // namespace

void RunMemoryJob(const BenchOptions& options, CReport& report)
{
    for (const int64_t size : options.sizes)
        for (const char* pKind = BenchDocumentKinds; *pKind != 0; ++pKind)
        {
            const std::string title = std::string("memory ") + *pKind + " " + SizeName(size);
            if (!IsSelected(options, title))
                continue;
            const BenchDocument document = MakeBenchDocument(*pKind, size);
            std::vector<Footprint> footprints;
            for (auto& pReader : MakeXmlReaders(document))
            {
                if (pReader->GetRole() == Role::NoDocument)
                    continue;
                pReader->Restore();
                const int64_t before = UsedMemory();
                const Role role = pReader->GetRole();
                if (pReader->Parse())
                    footprints.push_back(
                        {pReader->GetName(), role, UsedMemory() - before, AllowedMemory(document, role)});
                pReader->Discard();
            }
            report.AddMemory(title, document.elements, footprints);
        }
}
