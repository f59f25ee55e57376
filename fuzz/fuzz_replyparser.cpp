// Feeds arbitrary bytes, cut into arbitrary chunks, through ReplyParser and the
// straightforward strip-and-rescan loop, and aborts when they disagree on any
// frame, repair, decoded object or signal.
#include "device/replyparser.h"
#include "referenceparser.h"

#include <QtGlobal>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

void quiet(QtMsgType, const QMessageLogContext &, const QString &) {}

[[noreturn]] void disagree(const char *what, const ParsedReply &ours, const ParsedReply &reference)
{
    std::fprintf(stderr, "parsers disagree on %s\n  ours:      %s ok=%d\n  reference: %s ok=%d\n", what,
                 ours.frame.constData(), ours.ok, reference.frame.constData(), reference.ok);
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const bool installed = (qInstallMessageHandler(quiet), true);
    Q_UNUSED(installed)
    // Partial frames over the limit are dropped on purpose by ReplyParser only.
    if (size < 1 || size > 512 * 1024)
        return 0;
    // The first byte seeds the chunk sizes, so the fuzzer explores the cutting too.
    unsigned seed = data[0];
    const char *bytes = reinterpret_cast<const char *>(data + 1);
    const int length = int(size - 1);

    ReplyParser ours;
    ReferenceParser reference;
    int at = 0;
    while (at < length) {
        seed = seed * 1103515245u + 12345u;
        const int chunk = qMin(length - at, 1 + int((seed >> 16) % 97));
        const QByteArray piece(bytes + at, chunk);
        at += chunk;
        ours.append(piece);
        reference.append(piece);
        for (;;) {
            ParsedReply a, b;
            const bool gotOurs = ours.next(&a);
            const bool gotReference = reference.next(&b);
            if (gotOurs != gotReference)
                disagree(gotOurs ? "a frame only ours cut" : "a frame only the reference cut", a, b);
            if (!gotOurs)
                break;
            if (a.frame != b.frame)
                disagree("the frame", a, b);
            if (a.ok != b.ok || a.object != b.object || a.error != b.error)
                disagree("the decoding", a, b);
            if (a.signals_ != b.signals_)
                disagree("the signals", a, b);
        }
    }
    return 0;
}
