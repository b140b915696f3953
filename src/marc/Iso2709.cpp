#include "marc/MarcXml.h"
#include "marc/Readers.h"

#include <QCoreApplication>
#include <QIODevice>
#include <QLocale>
#include <QStringDecoder>

#include <memory>

#include <yaz/marcdisp.h>
#include <yaz/wrbuf.h>
#include <yaz/yaz-iconv.h>

namespace sysadmin::marc {

namespace {

constexpr char RecordEnd = '\x1d';
constexpr char SubfieldMark = '\x1f';
constexpr qsizetype LeastLength = 26; ///< a leader, an empty directory's end and the record's end
constexpr int LengthDigits = 5;
constexpr int EncodingPlace = 9;

struct Closer {
    void operator()(yaz_marc_t marc) const { yaz_marc_destroy(marc); }
    void operator()(yaz_iconv_t converter) const { yaz_iconv_close(converter); }
    void operator()(WRBUF buffer) const { wrbuf_destroy(buffer); }
};
template <typename Handle>
using Owned = std::unique_ptr<std::remove_pointer_t<Handle>, Closer>;

/// Whether the bytes can be MARC-8. The conversion leaves out bytes that stand for nothing in the basic sets;
/// other sets are called by escape sequences and not looked at.
bool IsMarc8(const QByteArray& record) {
    constexpr char escape = '\x1b';
    if (record.contains(escape))
        return true;
    return std::none_of(record.begin(), record.end(), [](char byte) {
        const auto value = uchar(byte);
        const bool isMark = value == 0x88 || value == 0x89 || value == 0x8d || value == 0x8e;
        return (value >= 0x7f && value <= 0xa0 && !isMark) || value == 0xaf || value == 0xbb ||
               value == 0xbe || value == 0xbf || (value >= 0xc9 && value <= 0xdf) || value == 0xfc ||
               value == 0xfd || value == 0xff;
    });
}

/// Whether the bytes are UTF-8; `hasOthers` says whether there are others than ASCII.
bool IsUtf8(const QByteArray& bytes, bool& hasOthers) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(bytes);
    hasOthers = decoded.size() != bytes.size();
    return !decoder.hasError();
}

/// Accents stand behind their letters in MARC-8 too once it is converted; one letter is one character
/// everywhere else.
void Compose(Record& record) {
    for (Field& field : record.fields) {
        field.value = field.value.normalized(QString::NormalizationForm_C);
        for (Subfield& subfield : field.subfields)
            subfield.value = subfield.value.normalized(QString::NormalizationForm_C);
    }
}

/// One record, from its leader to its end mark.
class Decoder {
public:
    Decoder()
        : m_marc(yaz_marc_create())
        , m_fromMarc8(yaz_iconv_open("UTF-8", "MARC-8"))
        , m_buffer(wrbuf_alloc()) {}

    /// What is wrong with the record; empty when `record` has it.
    QString Decode(const QByteArray& bytes, Record& record) {
        if (bytes.size() < LeastLength)
            return Words::tr("It has only %1 bytes.").arg(bytes.size());
        bool isNumber = false;
        const int length = bytes.left(LengthDigits).toInt(&isNumber);
        if (!isNumber)
            return Words::tr("Its leader does not begin with its length.");
        if (length != bytes.size())
            return Words::tr("Its leader says that it is %1 bytes long, but it has %2.")
                .arg(length)
                .arg(bytes.size());
        const bool isUnicode = bytes[EncodingPlace] == 'a';
        bool hasOthers = false;
        const bool isUtf8 = IsUtf8(bytes, hasOthers);
        if (isUnicode && !isUtf8)
            return Words::tr("It is marked as UTF-8 (leader/09), but is not in UTF-8.");
        if (!isUnicode && isUtf8 && hasOthers)
            return Words::tr("It is marked as MARC-8 (leader/09), but is in UTF-8.");
        if (!isUnicode && !IsMarc8(bytes))
            return Words::tr("It is marked as MARC-8 (leader/09), but is not in MARC-8.");
        return Read(bytes, isUnicode, record);
    }

private:
    QString Read(const QByteArray& bytes, bool isUnicode, Record& record) {
        yaz_marc_reset(m_marc.get());
        yaz_marc_iconv(m_marc.get(), isUnicode ? nullptr : m_fromMarc8.get());
        wrbuf_rewind(m_buffer.get());
        if (yaz_marc_read_iso2709(m_marc.get(), bytes.constData(), int(bytes.size())) != bytes.size() ||
            yaz_marc_write_marcxml(m_marc.get(), m_buffer.get()) != 0)
            return Words::tr("Its leader or directory cannot be read.");
        MarcXmlParser parser;
        parser.Add(QByteArray(wrbuf_buf(m_buffer.get()), qsizetype(wrbuf_len(m_buffer.get()))));
        if (parser.Next() != MarcXmlParser::Step::Record)
            return Words::tr("It holds characters that no record may hold.");
        // The reader notes as comments what does not fit, and goes on.
        if (const QStringList faults = parser.Comments(); !faults.isEmpty())
            return Words::tr("Its directory and its fields do not fit together (%1).")
                .arg(faults.first().left(100));
        record = parser.Taken();
        if (!isUnicode)
            Compose(record);
        qsizetype subfields = 0;
        for (const Field& field : record.fields)
            subfields += field.subfields.size();
        return subfields == bytes.count(SubfieldMark)
                   ? QString()
                   : Words::tr("The marks of its subfields are out of place.");
    }

    Owned<yaz_marc_t> m_marc;
    Owned<yaz_iconv_t> m_fromMarc8;
    Owned<WRBUF> m_buffer;
};

/// Cuts a file at the end marks, whatever the leaders say: after a broken record the next one is found again.
class Cutter {
public:
    explicit Cutter(QIODevice& device)
        : m_device(device) {}

    /// The next record with its end mark, and where it begins. Empty: there is none, and `Rest` is what is
    /// left.
    QByteArray Next(qint64& at) {
        qsizetype searched = 0;
        qsizetype end = -1;
        while ((end = m_pending.indexOf(RecordEnd, searched)) < 0 && m_pending.size() < MostRecordBytes) {
            searched = m_pending.size();
            const QByteArray bytes = m_device.read(BytesAtOnce);
            if (bytes.isEmpty())
                break;
            m_pending += bytes;
        }
        SkipBlank();
        end = m_pending.indexOf(RecordEnd);
        at = m_at;
        const QByteArray record = end < 0 ? QByteArray() : m_pending.left(end + 1);
        Drop(record.size());
        return record;
    }
    QByteArray Rest() const { return m_pending; }

private:
    /// Line ends and filling between records.
    void SkipBlank() {
        qsizetype blank = 0;
        while (blank < m_pending.size() &&
               (QByteArrayView("\r\n\t \x1a").contains(m_pending[blank]) || !m_pending[blank]))
            ++blank;
        Drop(blank);
    }
    void Drop(qsizetype count) {
        m_pending.remove(0, count);
        m_at += count;
    }

    QIODevice& m_device;
    QByteArray m_pending;
    qint64 m_at = 0;
};

} // namespace

void ReadIso2709(QIODevice& device, Collector& into) {
    Cutter cutter(device);
    Decoder decoder;
    while (true) {
        qint64 at = 0;
        const QByteArray bytes = cutter.Next(at);
        if (bytes.isEmpty() && cutter.Rest().isEmpty())
            return;
        if (into.IsFull())
            return into.SayMore();
        const QString where = Words::tr("at byte %1").arg(QLocale().toString(at));
        if (bytes.isEmpty())
            return into.Refuse(where, Words::tr("It has no end mark; nothing after it can be read."));
        Record record;
        if (const QString fault = decoder.Decode(bytes, record); !fault.isEmpty())
            into.Refuse(where, fault);
        else
            into.Add(std::move(record), where);
    }
}

} // namespace sysadmin::marc
