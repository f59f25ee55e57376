// Replays every file of a corpus folder through the fuzz target, so the suite
// keeps checking what the fuzzer found without needing libFuzzer.
#include <QDir>
#include <QFile>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s CORPUS_DIR\n", argv[0]);
        return 2;
    }
    const QDir corpus(QString::fromLocal8Bit(argv[1]));
    const QStringList files = corpus.entryList(QDir::Files, QDir::Name);
    if (files.isEmpty()) {
        std::fprintf(stderr, "no inputs in %s\n", argv[1]);
        return 1;
    }
    for (const QString &name : files) {
        QFile file(corpus.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            return 1;
        const QByteArray input = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(input.constData()), size_t(input.size()));
    }
    std::printf("%d passed, 0 failed\n", int(files.size()));
    return 0;
}
