#include "core/System.h"

#ifdef Q_OS_WIN

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QWidget>

#include <cstdio>

#include <windows.h>

#include <shellapi.h>

namespace sysadmin {

namespace {

// Of the viewer's interface; its library is loaded when it is first needed.
constexpr UINT DisplayTopic = 0x0000;
constexpr UINT CloseAll = 0x0012;
using HtmlHelp = HWND(WINAPI*)(HWND, LPCWSTR, UINT, DWORD_PTR);

HtmlHelp Viewer() {
    static const HtmlHelp viewer = [] {
        const HMODULE library = LoadLibraryExW(L"hhctrl.ocx", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
        const FARPROC found = library ? GetProcAddress(library, "HtmlHelpW") : nullptr;
        return found ? reinterpret_cast<HtmlHelp>(reinterpret_cast<void*>(found)) : nullptr;
    }();
    return viewer;
}

void CloseViewer() {
    Viewer()(nullptr, nullptr, CloseAll, 0);
}

bool IsConnected(DWORD stream) {
    const HANDLE handle = GetStdHandle(stream);
    return handle && handle != INVALID_HANDLE_VALUE && GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

} // namespace

// The eight-bit ones lack what the system's code page has not.
QStringList GivenArguments(int, char**) {
    int count = 0;
    LPWSTR* const given = CommandLineToArgvW(GetCommandLineW(), &count);
    QStringList arguments;
    for (int i = 1; i < count; ++i)
        arguments.append(QString::fromWCharArray(given[i]));
    LocalFree(given);
    return arguments;
}

void JoinConsole() {
    const bool hasOutput = IsConnected(STD_OUTPUT_HANDLE); // a file or a pipe
    const bool hasErrors = IsConnected(STD_ERROR_HANDLE);
    if ((hasOutput && hasErrors) || !AttachConsole(ATTACH_PARENT_PROCESS))
        return;
    if (!hasOutput && !std::freopen("CONOUT$", "w", stdout))
        return;
    if (!hasErrors && !std::freopen("CONOUT$", "w", stderr))
        return;
}

// There always is a display; without it Qt would not find the system's fonts.
void PaintWithoutDisplay() {}

bool ShowCompiledHelp(int helpContext) {
    const QString file = QCoreApplication::applicationDirPath() + "/SysAdmin.chm";
    if (!QFile::exists(file) || !Viewer())
        return false;
    const QString page = helpContext == 0 ? "contents" : QString::number(helpContext);
    const QString topic = QDir::toNativeSeparators(file) + "::/" + page + ".htm>main";
    const QWidget* const active = QApplication::activeWindow();
    const HWND owner = active ? reinterpret_cast<HWND>(active->winId()) : nullptr;
    if (!Viewer()(owner, reinterpret_cast<LPCWSTR>(topic.utf16()), DisplayTopic, 0))
        return false;
    static const bool closesAtTheEnd = (qAddPostRoutine(CloseViewer), true);
    Q_UNUSED(closesAtTheEnd);
    return true;
}

} // namespace sysadmin

#endif
