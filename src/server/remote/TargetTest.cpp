#include "server/remote/TargetTest.h"

#include "server/remote/RemoteSocket.h"

#include <QElapsedTimer>
#include <QRegularExpression>

#include <mutex>

#include <yaz/diagbib1.h>
#include <yaz/log.h>
#include <yaz/oid_db.h>
#include <yaz/pquery.h>
#include <yaz/proto.h>

namespace sysadmin::server {

namespace {

constexpr qint64 MostAnswerBytes = 1024 * 1024; ///< of one answer
constexpr qsizetype MostText = 16 * 1024;       ///< characters of a record that are shown
constexpr Odr_int MessageSize = 256 * 1024;

struct OdrDeleter {
    void operator()(ODR odr) const { odr_destroy(odr); }
};
using OdrHolder = std::unique_ptr<std::remove_pointer_t<ODR>, OdrDeleter>;

QString ShownText(const char* text) {
    return text ? QString::fromUtf8(text).left(MostText) : QString();
}

char* Copy(ODR odr, const QString& text) {
    return odr_strdup(odr, text.toUtf8().constData());
}

/// Without what a screen cannot show.
QString Shown(QString text) {
    static const QRegularExpression control("[\\x00-\\x09\\x0b-\\x1f\\x7f]");
    text.replace("\r\n", "\n").replace(control, " ");
    return text.left(MostText).trimmed();
}

QString InWords(const Z_DefaultDiagFormat& diagnostic) {
    const QString words = ShownText(diagbib1_str(diagnostic.condition ? int(*diagnostic.condition) : 0));
    const QString more = ShownText(diagnostic.u.v2Addinfo); // the same place, whatever the version
    return more.isEmpty() ? words : words + ": " + more;
}

QString InWords(const Z_DiagRec* diagnostic) {
    return diagnostic && diagnostic->which == Z_DiagRec_defaultFormat ? InWords(*diagnostic->u.defaultFormat)
                                                                      : QString();
}

/// What the target says of a failure; empty when it says nothing.
QString DiagnosticIn(const Z_Records* records) {
    if (!records)
        return {};
    if (records->which == Z_Records_NSD)
        return InWords(*records->u.nonSurrogateDiagnostic);
    if (records->which == Z_Records_multipleNSD && records->u.multipleNonSurDiagnostics->num_diagRecs > 0)
        return InWords(records->u.multipleNonSurDiagnostics->diagRecs[0]);
    return {};
}

QString MarcAsText(const char* bytes, int length, const QString& characterSet) {
    // Byte 9 of the leader says whether the record is in Unicode.
    const bool unicode = length > 9 && bytes[9] == 'a';
    const QByteArray from =
        characterSet.isEmpty() ? QByteArray(unicode ? "UTF-8" : "MARC-8") : characterSet.toLatin1();
    const yaz_marc_t marc = yaz_marc_create();
    const yaz_iconv_t converter = yaz_iconv_open("UTF-8", from.constData());
    yaz_marc_xml(marc, YAZ_MARC_LINE);
    if (converter)
        yaz_marc_iconv(marc, converter);
    const char* text = nullptr;
    size_t size = 0;
    QString shown;
    if (yaz_marc_decode_buf(marc, bytes, length, &text, &size) > 0)
        shown = QString::fromUtf8(text, qMin(qsizetype(size), 4 * MostText));
    if (converter)
        yaz_iconv_close(converter);
    yaz_marc_destroy(marc);
    return Shown(shown);
}

QString AsText(const Z_External& record, const QString& characterSet) {
    if (record.which == Z_External_sutrs)
        return Shown(QString::fromUtf8(record.u.sutrs->buf, record.u.sutrs->len));
    if (record.which != Z_External_octet)
        return {};
    const char* bytes = record.u.octet_aligned->buf;
    const int length = record.u.octet_aligned->len;
    if (record.direct_reference && oid_oidcmp(record.direct_reference, yaz_oid_recsyn_xml) == 0)
        return Shown(QString::fromUtf8(bytes, length));
    return MarcAsText(bytes, length, characterSet);
}

/// One association.
class Association {
public:
    Association(const TargetCall& call, const Patience& patience)
        : m_call(call)
        , m_socket(patience)
        , m_encode(odr_createmem(ODR_ENCODE))
        , m_decode(odr_createmem(ODR_DECODE)) {}

    RemoteResult Run() {
        if (!m_socket.Connect(m_call.host, m_call.port, RemoteSocket::Encryption::None))
            return Failed();
        if (!Open() || m_call.term.isEmpty() || !Search() || m_result.hits == 0)
            return m_result;
        Present();
        return m_result;
    }

private:
    RemoteResult& Failed() {
        m_result.outcome = m_socket.Failure();
        m_result.detail = m_socket.Detail();
        return m_result;
    }
    bool Fail(Outcome outcome, const QString& detail = {}) {
        m_result.outcome = outcome;
        m_result.detail = Shown(detail);
        return false;
    }

    /// Sends a request; the answer of the kind that is expected, or null.
    Z_APDU* Exchange(Z_APDU* request, int expected) {
        int length = 0;
        if (!z_APDU(m_encode.get(), &request, 0, nullptr)) {
            Fail(Outcome::OtherProtocol);
            return nullptr;
        }
        const char* bytes = odr_getbuf(m_encode.get(), &length, nullptr);
        const QByteArray message(bytes, length);
        odr_reset(m_encode.get());
        std::optional<QByteArray> answer;
        if (m_socket.Write(message))
            answer = m_socket.Read(
                [](const QByteArray& received) -> qint64 {
                    // All of this protocol's messages are constructed and of the context's class.
                    if (!received.isEmpty() && (received[0] & 0xE0) != 0xA0)
                        return -1;
                    return completeBER(received.constData(), int(received.size()));
                },
                MostAnswerBytes);
        if (!answer) {
            Failed();
            return nullptr;
        }
        m_answer = *answer;
        odr_reset(m_decode.get());
        odr_setbuf(m_decode.get(), m_answer.data(), int(m_answer.size()), 0);
        Z_APDU* apdu = nullptr;
        if (!z_APDU(m_decode.get(), &apdu, 0, nullptr) || !apdu) {
            Fail(Outcome::OtherProtocol);
            return nullptr;
        }
        if (apdu->which == Z_APDU_close) {
            Fail(Outcome::Closed, ShownText(apdu->u.close->diagnosticInformation));
            return nullptr;
        }
        if (apdu->which != expected) {
            Fail(Outcome::OtherProtocol);
            return nullptr;
        }
        return apdu;
    }

    bool Open() {
        ODR odr = m_encode.get();
        Z_APDU* request = zget_APDU(odr, Z_APDU_initRequest);
        Z_InitRequest& init = *request->u.initRequest;
        for (const int option : {Z_Options_search, Z_Options_present})
            ODR_MASK_SET(init.options, option);
        for (const int version : {Z_ProtocolVersion_1, Z_ProtocolVersion_2, Z_ProtocolVersion_3})
            ODR_MASK_SET(init.protocolVersion, version);
        *init.maximumRecordSize = MessageSize;
        *init.preferredMessageSize = MessageSize;
        init.implementationName = odr_strdup(odr, "sysadmin-server");
        init.implementationVersion = odr_strdup(odr, SYSADMIN_VERSION);
        const bool signsOn = !m_call.user.isEmpty() || m_call.password;
        if (signsOn) {
            auto* idPass = static_cast<Z_IdPass*>(odr_malloc(odr, sizeof(Z_IdPass)));
            idPass->groupId = nullptr;
            idPass->userId = m_call.user.isEmpty() ? nullptr : Copy(odr, m_call.user);
            idPass->password =
                m_call.password ? odr_strdupn(odr, m_call.password->Data(), size_t(m_call.password->Size()))
                                : nullptr;
            auto* identity = static_cast<Z_IdAuthentication*>(odr_malloc(odr, sizeof(Z_IdAuthentication)));
            identity->which = Z_IdAuthentication_idPass;
            identity->u.idPass = idPass;
            init.idAuthentication = identity;
        }
        const Z_APDU* answer = Exchange(request, Z_APDU_initResponse);
        if (!answer)
            return false;
        const Z_InitResponse& response = *answer->u.initResponse;
        m_result.name = Shown(ShownText(response.implementationName));
        m_result.version = Shown(ShownText(response.implementationVersion));
        return *response.result || Fail(Outcome::SignOnRefused);
    }

    bool Search() {
        ODR odr = m_encode.get();
        Z_APDU* request = zget_APDU(odr, Z_APDU_searchRequest);
        Z_SearchRequest& search = *request->u.searchRequest;
        char* database = Copy(odr, m_call.database.isEmpty() ? QString("Default") : m_call.database);
        search.num_databaseNames = 1;
        search.databaseNames = static_cast<Z_DatabaseName**>(odr_malloc(odr, sizeof(char*)));
        search.databaseNames[0] = database;
        // Records are asked for by themselves.
        *search.smallSetUpperBound = 0;
        *search.largeSetLowerBound = 1;
        *search.mediumSetPresentNumber = 0;
        auto* query = static_cast<Z_Query*>(odr_malloc(odr, sizeof(Z_Query)));
        query->which = Z_Query_type_1;
        query->u.type_1 = p_query_rpn(odr, PrefixQuery(m_call.attributes, m_call.term).toUtf8().constData());
        search.query = query;
        if (!query->u.type_1)
            return Fail(Outcome::SearchRefused);
        const Z_APDU* answer = Exchange(request, Z_APDU_searchResponse);
        if (!answer)
            return false;
        const Z_SearchResponse& response = *answer->u.searchResponse;
        const QString diagnostic = DiagnosticIn(response.records);
        if (!*response.searchStatus || !diagnostic.isEmpty())
            return Fail(Outcome::SearchRefused, diagnostic);
        m_result.hits = qMax<qint64>(0, *response.resultCount);
        return true;
    }

    bool Present() {
        ODR odr = m_encode.get();
        Z_APDU* request = zget_APDU(odr, Z_APDU_presentRequest);
        Z_PresentRequest& present = *request->u.presentRequest;
        *present.resultSetStartPoint = 1;
        *present.numberOfRecordsRequested = 1;
        present.preferredRecordSyntax = odr_oiddup(odr, yaz_oid_recsyn_usmarc);
        const Z_APDU* answer = Exchange(request, Z_APDU_presentResponse);
        if (!answer)
            return false;
        const Z_Records* records = answer->u.presentResponse->records;
        if (const QString diagnostic = DiagnosticIn(records); !diagnostic.isEmpty())
            return Fail(Outcome::RecordRefused, diagnostic);
        if (!records || records->which != Z_Records_DBOSD ||
            records->u.databaseOrSurDiagnostics->num_records < 1)
            return Fail(Outcome::RecordRefused);
        const Z_NamePlusRecord& first = *records->u.databaseOrSurDiagnostics->records[0];
        if (first.which == Z_NamePlusRecord_surrogateDiagnostic)
            return Fail(Outcome::RecordRefused, InWords(first.u.surrogateDiagnostic));
        if (first.which == Z_NamePlusRecord_databaseRecord)
            m_result.record = AsText(*first.u.databaseRecord, m_call.characterSet);
        return !m_result.record.isEmpty() || Fail(Outcome::RecordRefused);
    }

    const TargetCall& m_call;
    RemoteSocket m_socket;
    OdrHolder m_encode;
    OdrHolder m_decode;
    QByteArray m_answer; // what was decoded points into it
    RemoteResult m_result;
};

} // namespace

QString PrefixQuery(const SearchAttributes& attributes, const QString& term) {
    QString types;
    int type = 0;
    for (const int value : {attributes.use, attributes.relation, attributes.position, attributes.structure,
                            attributes.truncation, attributes.completeness}) {
        ++type;
        if (value > 0)
            types += QString("@attr %1=%2 ").arg(type).arg(value);
    }
    const QStringList words =
        attributes.joinsWords ? term.simplified().split(' ') : QStringList{term.trimmed()};
    QStringList parts;
    for (QString word : words)
        parts << types + '"' + word.replace('\\', "\\\\").replace('"', "\\\"") + '"';
    return QString("@attrset bib-1 ") + QString("@and ").repeated(parts.size() - 1) + parts.join(' ');
}

RemoteResult TryTarget(const TargetCall& call, const Patience& patience) {
    static std::once_flag quiet; // what a target sends is no business of this program's output
    std::call_once(quiet, [] { yaz_log_init_level(0); });
    QElapsedTimer timer;
    timer.start();
    RemoteResult result = Association(call, patience).Run();
    result.milliseconds = timer.elapsed();
    return result;
}

} // namespace sysadmin::server
