#include "server/remote/AddressTest.h"

#include "wire/Tls.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QSslSocket>
#include <QTimer>

namespace sysadmin::server {

namespace {

constexpr int LongestDetail = 300;

QNetworkRequest RequestOf(const AddressCall& call) {
    QNetworkRequest request(call.url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    if (call.url.scheme() != u"https")
        return request;
    QSslConfiguration encryption = wire::TlsConfiguration();
    encryption.setPeerVerifyMode(QSslSocket::VerifyPeer);
    request.setSslConfiguration(encryption);
    if (call.user.isEmpty())
        return request;
    QByteArray account = call.user.toUtf8() + ':';
    if (call.password)
        account += QByteArray(call.password->Data(), call.password->Size());
    request.setRawHeader("Authorization", "Basic " + account.toBase64());
    return request;
}

/// What an answer with this code means.
RemoteResult AnswerOf(const QNetworkReply& reply, int code) {
    constexpr int Unauthorised = 401;
    constexpr int Forbidden = 403;
    constexpr int Moved = 300;
    constexpr int Failed = 400;
    RemoteResult result;
    result.detail = QString::number(code) + ' ' +
                    reply.attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString().simplified();
    const QUrl other = reply.attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (code >= Moved && code < Failed && !other.isEmpty())
        result.detail += " (" + reply.url().resolved(other).toDisplayString() + ')';
    result.detail = result.detail.trimmed().left(LongestDetail);
    if (code == Unauthorised || code == Forbidden)
        result.outcome = Outcome::SignOnRefused;
    else if (code >= Failed)
        result.outcome = Outcome::SearchRefused;
    return result;
}

RemoteResult FailureOf(const QNetworkReply& reply, bool isDistrusted) {
    if (isDistrusted)
        return {.outcome = Outcome::NewCertificate};
    switch (reply.error()) {
    case QNetworkReply::HostNotFoundError:
        return {.outcome = Outcome::UnknownHost};
    case QNetworkReply::ConnectionRefusedError:
        return {.outcome = Outcome::Refused};
    case QNetworkReply::RemoteHostClosedError:
        return {.outcome = Outcome::Closed};
    case QNetworkReply::TimeoutError:
    case QNetworkReply::OperationCanceledError:
        return {.outcome = Outcome::TimedOut};
    case QNetworkReply::SslHandshakeFailedError:
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::NoError: // it ended without a word of the protocol
        return {.outcome = Outcome::OtherProtocol};
    default:
        return {.outcome = Outcome::Unreachable, .detail = reply.errorString().left(LongestDetail)};
    }
}

RemoteResult Ask(const AddressCall& call, const Patience& patience) {
    QNetworkAccessManager manager;
    manager.setProxy(QNetworkProxy::NoProxy);
    const std::unique_ptr<QNetworkReply> reply(manager.get(RequestOf(call)));
    bool isDistrusted = false;
    QObject::connect(reply.get(), &QNetworkReply::sslErrors, reply.get(), [&] { isDistrusted = true; });
    QEventLoop loop;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(reply.get(), &QNetworkReply::metaDataChanged, &loop, &QEventLoop::quit);
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    tick.start(Patience::Tick);
    const auto code = [&] { return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(); };
    while (code() == 0 && !reply->isFinished()) {
        if (patience.IsOver()) {
            reply->abort();
            return {.outcome = patience.Reason()};
        }
        loop.exec();
    }
    const RemoteResult result = code() != 0 ? AnswerOf(*reply, code()) : FailureOf(*reply, isDistrusted);
    reply->disconnect();
    reply->abort(); // the page itself is not read
    return result;
}

} // namespace

RemoteResult AskAddress(const AddressCall& call, const Patience& patience) {
    QElapsedTimer timer;
    timer.start();
    RemoteResult result = Ask(call, patience);
    result.milliseconds = timer.elapsed();
    return result;
}

} // namespace sysadmin::server
