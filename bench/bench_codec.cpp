// A list reply of 10,000 records, encoded and decoded: our codec, the same content as JSON, and a bare copy
// of the bytes, which no encoding can beat.
#include "wire/Codec.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <benchmark/benchmark.h>

using namespace sysadmin;

namespace {

constexpr int Records = 10000;

wire::Reply ListReply() {
    wire::Reply reply;
    reply.number = 7;
    for (int i = 0; i < Records; ++i) {
        reply.fields.append({"ID", QString::number(100000 + i)});
        reply.fields.append({"Cd", "LOC" + QString::number(i)});
        reply.fields.append({"Nm", "Main building, reading room " + QString::number(i)});
        reply.fields.append(wire::Field{"LN", "Library of Natural Sciences"});
    }
    return reply;
}

QByteArray EncodeJson(const wire::Reply& reply) {
    QJsonArray fields;
    for (const wire::Field& field : reply.fields) {
        fields.append(field.tag);
        fields.append(field.value);
    }
    return QJsonDocument(QJsonArray{qint64(reply.number), reply.status, fields})
        .toJson(QJsonDocument::Compact);
}

wire::Reply DecodeJson(const QByteArray& bytes) {
    const QJsonArray message = QJsonDocument::fromJson(bytes).array();
    wire::Reply reply;
    reply.number = quint64(message.at(0).toInteger());
    reply.status = qint16(message.at(1).toInt());
    const QJsonArray fields = message.at(2).toArray();
    reply.fields.reserve(fields.size() / 2);
    for (qsizetype i = 0; i + 1 < fields.size(); i += 2)
        reply.fields.append({fields.at(i).toString(), fields.at(i + 1).toString()});
    return reply;
}

void Count(benchmark::State& state, const QByteArray& message) {
    state.SetItemsProcessed(state.iterations() * Records);
    state.SetBytesProcessed(state.iterations() * message.size());
}

void EncodeOurs(benchmark::State& state) {
    const wire::Reply reply = ListReply();
    for (auto _ : state)
        benchmark::DoNotOptimize(wire::Encode(reply));
    Count(state, wire::Encode(reply));
}

void EncodeAsJson(benchmark::State& state) {
    const wire::Reply reply = ListReply();
    for (auto _ : state)
        benchmark::DoNotOptimize(EncodeJson(reply));
    Count(state, EncodeJson(reply));
}

// What a client does with bytes that arrived: find the end of the message, then decode it.
void DecodeOurs(benchmark::State& state) {
    const QByteArray bytes = wire::Encode(ListReply());
    for (auto _ : state) {
        wire::FrameScanner scanner;
        if (scanner.Scan(bytes) != wire::FrameScanner::Result::Complete)
            state.SkipWithError("not a whole message");
        std::optional<wire::Reply> reply = wire::DecodeReply(bytes);
        if (!reply || reply->fields.size() != 4 * Records)
            state.SkipWithError("not the reply that was encoded");
        benchmark::DoNotOptimize(reply);
    }
    Count(state, bytes);
}

void DecodeFromJson(benchmark::State& state) {
    const QByteArray bytes = EncodeJson(ListReply());
    for (auto _ : state) {
        wire::Reply reply = DecodeJson(bytes);
        if (reply.fields.size() != 4 * Records)
            state.SkipWithError("not the reply that was encoded");
        benchmark::DoNotOptimize(reply);
    }
    Count(state, bytes);
}

void CopyBytes(benchmark::State& state) {
    const QByteArray bytes = wire::Encode(ListReply());
    for (auto _ : state)
        benchmark::DoNotOptimize(QByteArray(bytes.constData(), bytes.size()));
    Count(state, bytes);
}

BENCHMARK(EncodeOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(EncodeAsJson)->Unit(benchmark::kMillisecond);
BENCHMARK(DecodeOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(DecodeFromJson)->Unit(benchmark::kMillisecond);
BENCHMARK(CopyBytes)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
