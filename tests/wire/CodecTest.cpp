#include "wire/Codec.h"

#include <QCborArray>
#include <QCborValue>
#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace sysadmin::wire {
namespace {

using Result = FrameScanner::Result;

const Request ARequest{7, "AddVenTp", {{"NCd", "X"}, {"NNm", "Bücher 書籍 😀"}, {"", ""}, {"NCd", "X"}}};
const Reply AReply{7, -300, {{"Id", "1"}, {"Nm", "One\r\n"}, {"Id", "2"}, {"Nm", ""}}};

QByteArray Text(const QByteArray& bytes) {
    if (bytes.size() < 24)
        return char(0x60 + bytes.size()) + bytes;
    QByteArray header(1, char(0x7a));
    for (int shift = 24; shift >= 0; shift -= 8)
        header.append(char(bytes.size() >> shift));
    return header + bytes;
}

// A request of one field, written by hand: [1, name, [tag, value]].
QByteArray RequestOf(const QByteArray& name, const QByteArray& tag, const QByteArray& value) {
    return "\x83\x01" + Text(name) + "\x82" + Text(tag) + Text(value);
}

// Whether the scanner sees one whole message and the decoder takes it; the two never differ on valid UTF-8.
bool Accepted(const QByteArray& message, const Limits& limits = {}) {
    FrameScanner scanner(limits);
    const bool complete = scanner.Scan(message) == Result::Complete && scanner.Length() == message.size();
    EXPECT_EQ(complete, DecodeRequest(message, limits).has_value()) << message.left(60).toHex().toStdString();
    return complete;
}

// Scans with the bytes arriving in pieces of this size; the result after the last one.
Result ScanInPieces(const QByteArray& bytes, qsizetype piece, qint64* length = nullptr) {
    FrameScanner scanner;
    Result result = Result::Incomplete;
    for (qsizetype end = qMin(piece, bytes.size());; end = qMin(end + piece, bytes.size())) {
        result = scanner.Scan(bytes.left(end));
        if (result != Result::Incomplete || end == bytes.size())
            break;
    }
    if (length)
        *length = scanner.Length();
    return result;
}

TEST(Codec, WritesTheDocumentedBytesAndReadsWhatItWrote) {
    EXPECT_EQ(Encode(Request{300, "Get", {{"Id", "ä"}}}).toHex(), "8319012c634765748262496462c3a4");
    EXPECT_EQ(Encode(Reply{1, 55, {}}).toHex(), "8301183780");
    EXPECT_EQ(Encode(Reply{1, -1, {}}).toHex(), "83012080");
    const QString longest = QString(300000, 'x') + QChar(0);
    for (const Request& request :
         {ARequest, Request{std::numeric_limits<quint64>::max(), "", {}},
          Request{1, "Put", {{"V", longest}, {"W", "\u20ac"}, {"\ufeffT", "\ufeff"}}}})
        EXPECT_EQ(DecodeRequest(Encode(request)), request);
    Fields fields = AReply.fields;
    for (int i = 0; i < 3000; ++i) // so many tags that some share a slot of the table of tags
        fields.append({QString::number(i % 700), QString::number(i)});
    for (const int status : {0, 1, 23, 24, 255, 256, 32767, -1, -300, -32768}) {
        const Reply reply{1, qint16(status), fields};
        EXPECT_EQ(DecodeReply(Encode(reply)), reply);
    }
}

// Our codec writes and reads the same CBOR as Qt's does, byte by byte.
TEST(Codec, AgreesWithAnotherOne) {
    QRandomGenerator random(11);
    const QStringList letters{"a", "\"", "\\", "\n", QString(QChar(0)), "ß", "€", "書", "😀"};
    const auto text = [&](int most) {
        QString word;
        for (int left = random.bounded(most); left > 0; --left)
            word += letters[random.bounded(letters.size())];
        return word;
    };
    for (int round = 0; round < 500; ++round) {
        Reply reply{
            quint64(random.generate()) << random.bounded(20), qint16(random.bounded(-32768, 32768)), {}};
        QCborArray fields;
        for (int left = random.bounded(40); left > 0; --left) {
            const Field field{text(8), text(round % 10 == 0 ? 3000 : 300)};
            reply.fields.append(field);
            fields << field.tag << field.value;
        }
        QCborArray whole{qint64(reply.number), reply.status, fields};
        if (round % 2 == 0) {
            reply.changed = {"Loc", text(8)};
            whole << QCborArray::fromStringList(reply.changed);
        }
        const QByteArray theirs = whole.toCborValue().toCbor();
        EXPECT_EQ(Encode(reply), theirs);
        EncodedFields appended;
        for (const Field& field : reply.fields)
            if (random.bounded(2))
                appended.Append(field.tag, field.value);
            else
                appended.Append(EncodedTag(field.tag), field.value.toUtf8());
        EXPECT_EQ(Encode(reply.number, reply.status, appended, reply.changed), theirs);
        EXPECT_EQ(DecodeReply(theirs), reply);
    }
}

TEST(Codec, FieldsThatStayAsTheyCameAreFoundByTheirTags) {
    // So many different tags that some share a slot, in one reply and in one of few.
    for (const int tags : {1, 3, 12, 13, 700}) {
        Fields fields;
        for (int i = 0; i < 2000; ++i)
            fields.append({QString::number(i % tags), QString(i % 3 == 0   ? "書 %1"
                                                              : i % 7 == 0 ? ""
                                                                           : "Book %1")
                                                          .arg(i)});
        const auto reply = ReadReply(Encode(Reply{1, 0, fields}));
        ASSERT_TRUE(reply);
        const ReceivedFields& received = reply->fields;
        EXPECT_EQ(received.All(), fields);
        EXPECT_EQ(ReceivedFields(fields).All(), fields);
        EXPECT_EQ(received.CountTags(), tags);
        for (int i = 0; i < tags; ++i) {
            EXPECT_EQ(received.TagAt(i), received.FindTag(QString::number(i)));
            EXPECT_EQ(FirstValue(received, QString::number(i)), fields[i].value);
        }
        EXPECT_EQ(received.FindTag("-"), ReceivedFields::NoTag);
        EXPECT_EQ(FirstValue(received, "-"), "");
    }
}

TEST(Codec, TextsOfOneMessageShareMemoryAndNothingElse) {
    const auto valueOf = [](int i) { return QString("Reading room %1").arg(i); };
    QStringList texts;
    {
        Fields fields;
        for (int i = 0; i < 2000; ++i)
            fields.append({"Nm", valueOf(i)});
        const auto reply = ReadReply(Encode(Reply{1, 0, fields}));
        ASSERT_TRUE(reply);
        const ReceivedFields copy = reply->fields;
        EXPECT_TRUE(copy.ValueAt(4).isSharedWith(reply->fields.ValueAt(5)));
        for (int i = 0; i < 2000; ++i)
            texts.append(copy.ValueAt(i));
    }
    // The last two of their piece of memory, one of which is changed then.
    QString first = texts[600];
    QString second = texts[601];
    texts.clear();
    EXPECT_EQ(first.utf16()[first.size()], 0);
    first += " and the one behind it, which is a long name";
    EXPECT_EQ(first, valueOf(600) + " and the one behind it, which is a long name");
    EXPECT_EQ(second, valueOf(601));
    first.clear();
    second.insert(0, "The ").append('.');
    EXPECT_EQ(second, "The " + valueOf(601) + '.');
}

TEST(Codec, RefusesWhatIsNotAMessageOfItsKind) {
    const char* refused[] = {
        // Nothing; the array one short and one too long; bytes after the message; a tag without a value.
        "", "8201614180", "840161418000", "830161418000", "8301614181", "83016141816141",
        // A number below zero, a text for it, a byte string for a text, a map or bare values for the fields.
        "8320614180", "836141614180", "8301414180", "83016141a0", "8301614182614101", "830161418261414141",
        // Lengths told at the end, a header that means nothing, a marked item.
        "9f01614180ff", "83017f6141ff80", "830161419fff", "83016141827f6141ff6141", "831c614180",
        "c08301614180"};
    for (const char* hex : refused) {
        EXPECT_FALSE(DecodeRequest(QByteArray::fromHex(hex))) << hex;
        EXPECT_FALSE(DecodeReply(QByteArray::fromHex(hex))) << hex;
    }
    EXPECT_FALSE(DecodeReply(Encode(ARequest)));
    EXPECT_FALSE(DecodeRequest(Encode(AReply)));
    for (const char* status : {"198000", "398000", "1a00010000", "3bffffffffffffffff", "1bffffffffffffffff"})
        EXPECT_FALSE(DecodeReply(QByteArray::fromHex("8301" + QByteArray(status) + "80"))) << status;
    for (const QByteArray& bad : {QByteArray("\xff"), QByteArray("a\xc3"), QByteArray("\xc0\x80"),
                                  QByteArray("\xed\xa0\x80"), QByteArray("\xf5\x80\x80\x80")}) {
        EXPECT_FALSE(DecodeRequest(RequestOf(bad, "T", "v")));
        EXPECT_FALSE(DecodeRequest(RequestOf("N", bad, "v")));
        EXPECT_FALSE(DecodeRequest(RequestOf("N", "T", bad)));
    }
}

TEST(FrameScanner, FindsMessagesThatArriveInPieces) {
    const QByteArray first = Encode(ARequest);
    const QByteArray second = Encode(Request{8, "LstVenTp", {{"V", QString(70000, 'v')}}});
    for (qsizetype size = 0; size < first.size(); ++size) {
        EXPECT_EQ(int(FrameScanner().Scan(first.left(size))), int(Result::Incomplete)) << size;
        EXPECT_FALSE(DecodeRequest(first.left(size)));
    }
    for (const qsizetype piece : {1, 2, 3, 7, 64}) {
        qint64 length = 0;
        EXPECT_EQ(int(ScanInPieces(first + second, piece, &length)), int(Result::Complete));
        EXPECT_EQ(length, first.size());
    }
    FrameScanner scanner;
    ASSERT_EQ(int(scanner.Scan(first + second)), int(Result::Complete));
    scanner.Reset();
    ASSERT_EQ(int(scanner.Scan(second)), int(Result::Complete));
    EXPECT_EQ(scanner.Length(), second.size());
}

TEST(FrameScanner, KeepsEachLimitToTheByte) {
    const Limits limits{.name = 64, .tag = 32, .value = 1000, .message = 1200, .fields = 3};
    const auto ofSizes = [&](int name, int tag, int value) {
        const auto text = [](int size) { return QByteArray(size, 'x'); };
        return Accepted(RequestOf(text(name), text(tag), text(value)), limits);
    };
    EXPECT_TRUE(ofSizes(64, 32, 1000));
    EXPECT_FALSE(ofSizes(65, 32, 1000) || ofSizes(64, 33, 1000) || ofSizes(64, 32, 1001));
    const auto fields = [](int count) { return Encode(Request{1, "N", Fields(count, Field{"T", "v"})}); };
    EXPECT_TRUE(Accepted(fields(3), limits));
    EXPECT_FALSE(Accepted(fields(4), limits));

    Limits exact = limits;
    const QByteArray message = fields(3);
    for (const qint64 limit : {message.size() - 1, message.size(), message.size() + 1}) {
        exact.message = limit;
        EXPECT_EQ(Accepted(message, exact), limit >= message.size()) << limit;
    }
    // A value of many bytes, but fewer characters: what counts is the encoded form.
    EXPECT_FALSE(Accepted(Encode(Request{1, "N", {{"T", QString(501, QChar(0xe4))}}}), limits));
}

TEST(FrameScanner, TellsFromTheHeaderAloneThatALimitIsBroken) {
    const char* headers[] = {
        "83017841",                   // a name of 65 bytes
        "830161419b0000000100000000", // four thousand million fields
        "83016141827821",             // a tag of 33 bytes
        "830161418261417a00100001",   // a value of a mebibyte and one byte
        "830161418261417bffffffffffffffff",
        "83017bffffffffffffffff",
    };
    for (const char* header : headers) {
        const QByteArray bytes = QByteArray::fromHex(header);
        EXPECT_EQ(int(ScanInPieces(bytes, bytes.size())), int(Result::Broken)) << header;
        EXPECT_EQ(int(ScanInPieces(bytes, 1)), int(Result::Broken)) << header;
    }
    // Before sign-on a message that would be welcome later is refused as soon as it is sure to be too long.
    FrameScanner scanner(Limits::BeforeSignOn());
    EXPECT_EQ(int(scanner.Scan(QByteArray::fromHex("830161418261417a00010000"))), int(Result::Broken));
}

// Damaged messages and random bytes: the scanner must not depend on how the bytes arrive, must agree with the
// decoder, and what the decoder takes must be what it means.
TEST(CodecFuzz, DamagedMessagesAreRefusedOrMeanWhatTheySay) {
    QRandomGenerator random(20240117);
    const QByteArray originals[] = {
        Encode(ARequest), Encode(AReply), Encode(Request{1, "SAInit", {}}),
        Encode(Request{65536, QString(64, 'n'), {{QString(32, 't'), QString(400, 'v')}}})};
    int taken = 0;
    for (int round = 0; round < 60000; ++round) {
        QByteArray bytes = originals[random.bounded(4)];
        if (random.bounded(10) == 0) {
            bytes.resize(random.bounded(60));
            for (char& byte : bytes)
                byte = char(random.bounded(256));
        }
        for (int changes = random.bounded(4); changes > 0 && !bytes.isEmpty(); --changes) {
            const int place = int(random.bounded(bytes.size()));
            const int kind = random.bounded(4);
            if (kind == 0)
                bytes[place] = char(random.bounded(256));
            else if (kind == 1)
                bytes[place] = char(bytes[place] ^ (1 << random.bounded(8)));
            else if (kind == 2)
                bytes.remove(place, 1 + random.bounded(4));
            else
                bytes.insert(place, char(random.bounded(256)));
        }
        qint64 length = 0;
        const Result whole = ScanInPieces(bytes, qMax<qsizetype>(1, bytes.size()), &length);
        ASSERT_EQ(int(whole), int(ScanInPieces(bytes, 1 + random.bounded(5)))) << bytes.toHex().toStdString();
        const std::optional<Request> request = DecodeRequest(bytes);
        const std::optional<Reply> reply = DecodeReply(bytes);
        if (request || reply) {
            ++taken;
            ASSERT_TRUE(whole == Result::Complete && length == bytes.size());
        }
        ASSERT_TRUE(!request || DecodeRequest(Encode(*request)) == request);
        ASSERT_TRUE(!reply || DecodeReply(Encode(*reply)) == reply);
    }
    EXPECT_GT(taken, 5000);
}

} // namespace
} // namespace sysadmin::wire
