#include "device/replyparser.h"
#include "referenceparser.h"
#include "logcapture.h"

#include <QDebug>
#include <QRandomGenerator>
#include <QTest>

namespace {
// The frames cut from the chunks, " (bad)" appended to those that do not decode.
QList<QByteArray> cut(const QList<QByteArray> &chunks, ReplyParser &&parser = ReplyParser())
{
    QList<QByteArray> frames;
    ParsedReply reply;
    for (const QByteArray &chunk : chunks) {
        parser.append(chunk);
        while (parser.next(&reply))
            frames << reply.frame + (reply.ok ? "" : " (bad)");
    }
    return frames;
}

const QByteArray Ver = R"({"type":"ORXM200","FPGA":"V1.0.5","MCU":"V2.0.3"})";
const QByteArray Vid = R"({"video1":1,"video2":2,"video3":3,"mode":6})";
const QByteArray Aud = R"({"audio1":1,"audio2":2})";
const QByteArray Irm = R"({"IR1":1,"IR2":2})";
const QByteArray Inp = R"({"input-1":true,"input-2":false,"in1":1920x1080x60Hz,"in2":noinput})";
const QByteArray Out = R"({"out1":"1920x1080x60Hz","out2":"1280x720x60Hz"})";
const QByteArray Net = R"({"ip":"192.168.1.188","gateway":"192.168.1.1","subnet":"255.255.255.0","mac":"00:1a:2b:3c:4d:5e"})";
const QByteArray Vol = R"({"Volume1":50,"Volume2":0})";
const QByteArray Cap = R"({"Switch":true,"Speed":5,"Color":255,255,255,"Position_x":0,"Position_y":0,"Bg_switch":false,"Bg_Color":0,0,0,"Move_dir":left})";
const QByteArray InpQuoted = R"({"input-1":"true","input-2":"false","in1":"1920x1080x60Hz","in2":"noinput"})";
const QByteArray CapQuoted = R"({"Switch":"true","Speed":5,"Color":"255,255,255","Position_x":0,)"
                             R"("Position_y":0,"Bg_switch":"false","Bg_Color":"0,0,0","Move_dir":"left"})";
} // namespace

class tst_ReplyParser : public QObject
{
    Q_OBJECT

private slots:
    void init() { capturedLog().clear(); qInstallMessageHandler(captureLog); }
    void cleanup() { qInstallMessageHandler(nullptr); }

    void stream_isCutAndRepaired_data();
    void stream_isCutAndRepaired();
    void randomStreams_matchTheReferenceParser();
    void route_findsEveryWordAnywhere_data();
    void route_findsEveryWordAnywhere();
    void buffer_staysBoundedAgainstJunkAndRunawayFrames();
};

void tst_ReplyParser::stream_isCutAndRepaired_data()
{
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<QList<QByteArray>>("frames");
    QTest::addColumn<QString>("loggedOnce"); // empty: no decode error may be logged

    QTest::newRow("blanks and line feeds vanish, inside strings too")
            << QByteArray("{ \"out1\" : \"Port Name\" }\n") << QList<QByteArray>{R"({"out1":"PortName"})"} << "";
    QTest::newRow("carriage returns stay") << QByteArray("{\"mode\":\r6}") << QList<QByteArray>{"{\"mode\":\r6}"} << "";
    QTest::newRow("brace inside a value cuts the frame")
            << R"({"out1":"a}b"})" + Vol << QList<QByteArray>{R"({"out1":"a} (bad))", Vol} << "json format parse error";
    QTest::newRow("second opening brace belongs to the frame")
            << QByteArray(R"({"a":{"b":1}})") << QList<QByteArray>{R"({"a":{"b":1} (bad))"} << "json format parse error";
    QTest::newRow("input info: a quoted value is quoted twice and logged")
            << R"({"in1":"x"})" + Ver << QList<QByteArray>{R"({"in1":""x""} (bad))", Ver}
            << R"(json format parse error!raw data: "{\"in1\":\"\"x\"\"}" error:)";
    QTest::newRow("caption: direction not last")
            << QByteArray(R"({"Switch":false,"Speed":1,"Color":1,2,3,"Position_x":4,"Position_y":5,"Bg_switch":true,)"
                          R"("Bg_Color":6,7,8,"Move_dir":right,"x":1})")
            << QList<QByteArray>{R"({"Switch":"false","Speed":1,"Color":"1,2,3","Position_x":4,"Position_y":5,)"
                                 R"("Bg_switch":"true","Bg_Color":"6,7,8","Move_dir":"right","x":1})"}
            << "add char osdortitle imf:";
    // Every byte the cutting keeps, in a value the repairs leave alone: the line
    // carries the repaired text as the debug stream quotes and escapes it.
    QByteArray bytes;
    for (int c = 0; c < 256; ++c) {
        if (c != ' ' && c != '\n' && c != '{' && c != '}')
            bytes += char(c);
    }
    const QByteArray oddCaption = R"({"Switch":"true","Speed":5,"Color":"255,255,255","Position_x":0,"Position_y":)" + bytes
            + R"(,"Bg_switch":"false","Bg_Color":"0,0,0","Move_dir":"left"})";
    QString oddLine;
    QDebug(&oddLine).nospace() << "add char osdortitle imf: " << QString::fromLatin1(oddCaption.constData(), oddCaption.size());
    QTest::newRow("caption: odd bytes")
            << QByteArray(oddCaption).replace("\"true\"", "true").replace("\"false\"", "false").replace("\"left\"", "left")
                       .replace("\"255,255,255\"", "255,255,255").replace("\"0,0,0\"", "0,0,0")
            << QList<QByteArray>{oddCaption + " (bad)"} << oddLine;
    // Junk in front, between frames and a stray "}", with every kind of reply.
    QTest::newRow("every kind of frame") << "\r\x01junk" + Ver + " \n" + Vid + Aud + "\r" + Irm + Inp + "}" + Out + Net + Vol + Cap
            << QList<QByteArray>{Ver, Vid, Aud, Irm, InpQuoted, Out, Net, Vol, CapQuoted} << "add char osdortitle imf:";
}

void tst_ReplyParser::stream_isCutAndRepaired()
{
    QFETCH(QByteArray, stream);
    QFETCH(QList<QByteArray>, frames);
    QFETCH(QString, loggedOnce);

    QCOMPARE(cut({stream}), frames);
    QCOMPARE(capturedLog().filter(loggedOnce.isEmpty() ? "json format parse error" : loggedOnce).size(),
             loggedOnce.isEmpty() ? 0 : 1);
    // Fed a byte at a time, the stream gives the same frames (bursts: see the random streams).
    QList<QByteArray> bytes;
    for (char byte : stream)
        bytes << QByteArray(1, byte);
    QCOMPARE(cut(bytes), frames);
}

void tst_ReplyParser::randomStreams_matchTheReferenceParser()
{
    // Streams built from the bytes that matter to the cutting and repairs, fed
    // in random bursts; the plain loop is the yardstick frame for frame.
    const QByteArray alphabet = "{}{}\" :,\n\r inoutIRipx0123Color";
    const QList<QByteArray> pieces{Ver, Vid, Aud, Irm, Inp, Out, Net, Vol, Cap};
    QRandomGenerator rng(20261122);
    for (int round = 0; round < 300; ++round) {
        QByteArray stream;
        while (stream.size() < 600)
            stream += rng.bounded(3) == 0 ? pieces[rng.bounded(pieces.size())] : alphabet.mid(rng.bounded(alphabet.size()), 1);
        ReplyParser ours;
        ReferenceParser reference;
        for (int at = 0, n = 0; at < stream.size(); at += n) {
            n = 1 + rng.bounded(40);
            ours.append(stream.mid(at, n));
            reference.append(stream.mid(at, n));
            ParsedReply a, b;
            while (ours.next(&a)) {
                QVERIFY(reference.next(&b));
                QCOMPARE(a.frame, b.frame);
                QCOMPARE(a.ok, b.ok);
                QCOMPARE(a.signals_, b.signals_);
            }
            QVERIFY(!reference.next(&b));
        }
    }
}

void tst_ReplyParser::route_findsEveryWordAnywhere_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *word : {"in", "input", "ip", "Volume", "type", "video", "audio", "IR", "out", "switch"})
        QTest::newRow(word) << QByteArray(word);
    // What nearly is a word, words that overlap, and two in a row.
    for (const char *text : {"i", "Vol", "ty", "vide", "aud", "I", "ou", "swit", "inpu", "Volum", "iinput", "ininput",
                             "IRIR", "vvideo", "ououtt", "inip", "typeaudio", "switcVideo"})
        QTest::newRow(text) << QByteArray(text);
}

void tst_ReplyParser::route_findsEveryWordAnywhere()
{
    QFETCH(QByteArray, text);
    // The words as the signals raise them, each found anywhere in the frame.
    const QList<QPair<const char *, ReplySignal>> words{
            {"ip", ReplySignal::NetWork},     {"Volume", ReplySignal::Volume},      {"type", ReplySignal::Version},
            {"video", ReplySignal::VideoMap}, {"input", ReplySignal::InputState},   {"audio", ReplySignal::AudioMap},
            {"IR", ReplySignal::IrMap},       {"in", ReplySignal::InResolution},    {"out", ReplySignal::OutResolution},
            {"switch", ReplySignal::Title}};
    // Filler of letters that start words, but no word.
    const QByteArray filler = QByteArray("oixVatsvI").repeated(6);
    for (int before = 0; before <= 40; ++before) {
        for (int after : {0, 1, 15, 16, 17}) {
            const QByteArray frame = filler.left(before) + text + filler.left(after);
            ReplySignals expected;
            for (const auto &word : words) {
                if (frame.contains(word.first))
                    expected.append(word.second);
            }
            QVERIFY2(ReplyParser::route(frame) == expected, frame.constData());
        }
    }
}

void tst_ReplyParser::buffer_staysBoundedAgainstJunkAndRunawayFrames()
{
    ReplyParser parser;
    // 4 MiB of junk without a "{" is not kept, stray "}" or not.
    for (int i = 0; i < 64; ++i)
        parser.append(QByteArray(64 * 1024, 'x') + "}");
    QCOMPARE(parser.bufferedBytes(), 0);
    // A frame that never closes is dropped past 1 MiB, logged once.
    parser.append("{\"a\":\"");
    for (int i = 0; i < 20 * 4; ++i) { // 20 MiB
        parser.append(QByteArray(256 * 1024, 'y'));
        QVERIFY(parser.bufferedBytes() <= ReplyParser::MaxPartialFrame + 1);
    }
    QCOMPARE(capturedLog().filter("receive buffer: dropped").size(), 1);
    QCOMPARE(cut({"}" + Vol}, std::move(parser)), QList<QByteArray>{Vol});
}

QTEST_GUILESS_MAIN(tst_ReplyParser)
#include "tst_replyparser.moc"
