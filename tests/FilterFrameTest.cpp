#include "LXBlurProcessing.h"
#include "LXSharpenProcessing.h"
#include "support/ExhaustionSweep.h"
#include "support/FilterCases.h"

#include <QtCore/QBuffer>
#include <QtCore/QDataStream>
#include <QtCore/QMetaMethod>

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace {

using namespace Reference;

} // namespace

// ---- range and progress -------------------------------------------------------------------------

TEST(FilterFrame, RangeAndProgress) {
    LXAdjustmentProcessing frame;
    std::vector<std::vector<int>> emitted;
    QObject::connect(&frame, &LXAdjustmentProcessing::RangeChanged, [&](int minimum, int maximum) {
        EXPECT_EQ(frame.GetMinimumRange(), minimum);
        EXPECT_EQ(frame.GetMaximumRange(), maximum);
        emitted.push_back({minimum, maximum});
    });
    QObject::connect(&frame, &LXAdjustmentProcessing::ProgressChanged, [&](int value) {
        EXPECT_EQ(frame.GetRangeValue(), value);
        emitted.push_back({value});
    });
    frame.SetRange(0, 0);
    frame.SetProgressValue(0);
    frame.SetProgressValue(5); // beyond the range
    frame.SetProgressValue(5);
    frame.SetRange(0, 3);
    frame.SetRange(0, 3);
    frame.SetRange(-1, 3);
    frame.SetProgressValue(-7);
    EXPECT_EQ(emitted, (std::vector<std::vector<int>>{{5}, {0, 3}, {-1, 3}, {-7}}));
    EXPECT_EQ(frame.GetRangeValue(), -7);
}

TEST(FilterFrame, MetaObject) {
    const QMetaObject& meta = LXAdjustmentProcessing::staticMetaObject;
    EXPECT_STREQ(meta.className(), "LXAdjustmentProcessing");
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods << (meta.method(i).methodType() == QMetaMethod::Signal ? "signal " : "slot ") +
                       QString::fromLatin1(meta.method(i).methodSignature()) + " " +
                       meta.method(i).parameterNames().join(' ');
    EXPECT_EQ(methods, QStringList({"signal RangeChanged(int,int) minimum maximum",
                                    "signal ProgressChanged(int) value",
                                    "slot SetRange(int,int) minimum maximum",
                                    "slot SetProgressValue(int) value"}));
    QReadWriteLock lock;
    bool flag = false;
    EXPECT_EQ(LXBoxBlurProcessing(lock, flag).metaObject(), &meta) << "filters have none";
}

// ---- streams ------------------------------------------------------------------------------------

namespace {

/// Takes so many bytes, and no more.
class FullDevice : public QIODevice {
public:
    explicit FullDevice(int room) : m_room(room) { open(WriteOnly | Unbuffered); }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 size) override {
        const qint64 taken = std::min<qint64>(size, m_room);
        m_room -= taken;
        return taken > 0 ? taken : -1;
    }

private:
    qint64 m_room;
};

template <class Params>
QByteArray Written(const Params& params) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    EXPECT_TRUE(params.Write(stream));
    QByteArray byOperator;
    QDataStream other(&byOperator, QIODevice::WriteOnly);
    EXPECT_EQ(&(other << params), &other);
    EXPECT_EQ(bytes, byOperator);
    return bytes;
}

/// One trace, of the stream's own file.
void CheckLog(const QString& text) {
    ASSERT_EQ(LogCapture::Lines().size(), 1) << qPrintable(text);
    const QString line = LogCapture::Lines()[0];
    EXPECT_TRUE(line.startsWith("Build date=")) << qPrintable(line);
    EXPECT_TRUE(line.contains(", file=\"src/LXFilterProcessing")) << qPrintable(line);
    EXPECT_TRUE(line.endsWith("\". " + text)) << qPrintable(line);
    EXPECT_EQ(LogCapture::Contexts()[0], "0 default - - 0");
    LogCapture::Lines().clear();
    LogCapture::Contexts().clear();
}

/// The fields are given in hexadecimal digits.
template <class Params>
void CheckStream(const QByteArray& header, const QString& name, const QByteArray& defaultFields,
                 const Params& params, const QByteArray& fields) {
    SCOPED_TRACE(header.constData());
    const LogCapture log;
    const QString writeError = "Write " + name + " data error.",
                  readError = "Read " + name + " data error.";
    const QByteArray defaultBytes = header + QByteArray::fromHex(defaultFields);
    const QByteArray bytes = header + QByteArray::fromHex(fields);
    EXPECT_EQ(Written(Params()).toHex(), defaultBytes.toHex());
    EXPECT_EQ(Written(params).toHex(), bytes.toHex());

    Params read;
    QDataStream stream(bytes + "more");
    EXPECT_TRUE(read.Read(stream));
    EXPECT_EQ(stream.device()->pos(), bytes.size()) << "the rest stays on the stream";
    EXPECT_EQ(Written(read).toHex(), bytes.toHex());
    EXPECT_TRUE(LogCapture::Lines().isEmpty());

    for (int size = 0; size < bytes.size(); ++size) {
        SCOPED_TRACE(testing::Message() << size << " bytes");
        const auto checkCut = [&](const Params& cut, const QDataStream& reader) {
            if (size < header.size())
                EXPECT_EQ(Written(cut), defaultBytes);
            else
                EXPECT_EQ(reader.status(), QDataStream::ReadPastEnd);
        };
        Params cut, cutByOperator;
        QDataStream in(bytes.left(size)), inByOperator(bytes.left(size));
        EXPECT_FALSE(cut.Read(in));
        checkCut(cut, in);
        EXPECT_EQ(&(inByOperator >> cutByOperator), &inByOperator);
        CheckLog(readError);
        checkCut(cutByOperator, inByOperator);

        FullDevice device(size), deviceOfOperator(size);
        QDataStream out(&device), outByOperator(&deviceOfOperator);
        EXPECT_FALSE(params.Write(out));
        EXPECT_EQ(&(outByOperator << params), &outByOperator);
        CheckLog(writeError);
    }

    QByteArray foreign = bytes;
    foreign[3] = char(foreign[3] ^ 0x20);
    QDataStream wrong(foreign);
    read = Params();
    EXPECT_FALSE(read.Read(wrong));
    EXPECT_EQ(Written(read), defaultBytes);
    EXPECT_EQ(wrong.device()->pos(), header.size()) << "no more than the header is taken";
    EXPECT_EQ(wrong.status(), QDataStream::Ok);
    wrong.device()->seek(0);
    wrong >> read;
    CheckLog(readError);
    EXPECT_EQ(wrong.status(), QDataStream::Ok);

    // What follows is read with the stream's settings.
    QByteArray little;
    QDataStream littleEndian(&little, QIODevice::ReadWrite);
    littleEndian.setByteOrder(QDataStream::LittleEndian);
    littleEndian << params;
    EXPECT_EQ(little.size(), bytes.size());
    EXPECT_NE(little, bytes);
    EXPECT_EQ(littleEndian.byteOrder(), QDataStream::LittleEndian);
    littleEndian.device()->seek(0);
    littleEndian >> read;
    EXPECT_EQ(Written(read), bytes);
}

} // namespace

TEST(FilterFrame, Streams) {
    CheckStream("RMVignette 1.00001", "vignette",
                "00000001 00000064 00000001 01 ffff 0000 0000 0000 0000",
                LXVignetteProcessing::Params{3, -5, QColor(0x11, 0x22, 0x33, 0x80), 7},
                "00000003 fffffffb 00000007 01 8080 1111 2222 3333 0000");
    CheckStream("RMSmoothen 1.00000", "smoothen", "0000000a",
                LXSmoothenProcessing::Params{0x12345678}, "12345678");
    CheckStream("RMSharpen 1.00000", "sharpen", "0000000a", LXSharpenProcessing::Params{-2},
                "fffffffe");
    CheckStream("RMHighPass 1.00000", "high pass", "4024000000000000 00000001 00000064",
                LXHighPassProcessing::Params{1.5, 2, 99}, "3ff8000000000000 00000002 00000063");
    CheckStream("RMGaussianBlur 1.00000", "gaussian blur", "4014000000000000",
                LXGaussianBlurProcessing::Params{-1.5}, "bff8000000000000");
    CheckStream("RMDiffuseGlow 1.00000", "diffuse glow",
                "00000064 00000005 00000080 01 ffff ffff ffff ffff 0000 00000000",
                LXDiffuseGlowProcessing::Params{1, 2, 3, QColor(5, 6, 7, 4), 8},
                "00000001 00000002 00000003 01 0404 0505 0606 0707 0000 00000008");
    CheckStream("RMBoxBlur 1.00000", "box blur", "00000005", LXBoxBlurProcessing::Params{256},
                "00000100");
    CheckStream("RMAddNoise 1.00000", "add noise", "00000032 00000000 00000001",
                LXAddNoiseProcessing::Params{2, 3, false}, "00000002 00000003 00000000");
    const LXShadowParams shadow{1, QColor(3, 4, 5, 2), 6, 7, 8, 9, 10};
    const QByteArray defaultShadow = "00000087 01 ffff 0000 0000 0000 0000 "
                                     "0000004b 00000019 00000000 00000014 00000000",
                     shadowFields = "00000001 01 0202 0303 0404 0505 0000 "
                                    "00000006 00000007 00000008 00000009 0000000a";
    CheckStream("RMDropShadow 1.00000", "drop shadow", defaultShadow,
                LXDropShadowProcessing::Params{shadow}, shadowFields);
    CheckStream("RMInnerShadow 1.00000", "inner shadow", defaultShadow,
                LXInnerShadowProcessing::Params{shadow}, shadowFields);
    CheckStream("RMRefineSelection 1.00000", "refine selection", "0000000000000000 00000000",
                RMRefineSelectionProcessing::Params{0.5, -2}, "3fe0000000000000 fffffffe");
}

TEST(FilterFrame, StreamsOfOldVignettesAndOddValues) {
    const LogCapture log;
    const QByteArray fields = QByteArray::fromHex("00000009 00000008 00000000");
    LXVignetteProcessing::Params vignette;
    vignette.color = Qt::red;
    QDataStream old("RMVignette 1.00000" + fields + "more");
    EXPECT_TRUE(vignette.Read(old));
    EXPECT_EQ(old.device()->pos(), 18 + 12);
    EXPECT_EQ(vignette.color, QColor(Qt::black));
    EXPECT_EQ(Written(vignette).toHex(),
              ("RMVignette 1.00001" + fields + QByteArray::fromHex("01 ffff 0000 0000 0000 0000"))
                  .toHex());
    for (int size = 0; size < 18 + 12; ++size) {
        QDataStream cut(QByteArray("RMVignette 1.00000" + fields).left(size));
        EXPECT_FALSE(vignette.Read(cut)) << size;
    }

    LXAddNoiseProcessing::Params noise;
    for (const char* truth : {"00000002", "ffffffff", "00000100"}) {
        noise.keepAlpha = false;
        QDataStream stream("RMAddNoise 1.00000" + QByteArray::fromHex("00000001 00000001") +
                           QByteArray::fromHex(truth));
        EXPECT_TRUE(noise.Read(stream));
        EXPECT_TRUE(noise.keepAlpha) << truth;
    }

    // Fields that were there are read, also if one after them is not.
    LXHighPassProcessing::Params highPass;
    QDataStream partly("RMHighPass 1.00000" + QByteArray::fromHex("3ff8000000000000 00000002 00"));
    partly >> highPass;
    CheckLog("Read high pass data error.");
    EXPECT_EQ(highPass.radius, 1.5);
    EXPECT_EQ(highPass.modeIndex, 2);
    EXPECT_EQ(highPass.opacity, 100) << "cut";
    QDataStream failed("RMHighPass 1.00000" + QByteArray(3, '\0'));
    failed.setStatus(QDataStream::ReadCorruptData);
    failed >> highPass;
    CheckLog("Read high pass data error.");
    EXPECT_EQ(failed.status(), QDataStream::ReadCorruptData) << "the first failure stays";

    LXDiffuseGlowProcessing::Params a, b;
    EXPECT_TRUE(a == b && !(a != b));
    b.color = QColor::fromHsv(0, 0, 255); // the same white to the eye
    EXPECT_TRUE(a != b);
    for (int LXDiffuseGlowProcessing::Params::*field :
         {&LXDiffuseGlowProcessing::Params::opacity, &LXDiffuseGlowProcessing::Params::radius,
          &LXDiffuseGlowProcessing::Params::threshold, &LXDiffuseGlowProcessing::Params::mode}) {
        b = a;
        b.*field += 1;
        EXPECT_TRUE(a != b && !(a == b));
    }
}

// ---- runs ---------------------------------------------------------------------------------------

TEST(FilterFrame, StopsBetweenTwoSteps) {
    for (const FilterCase& filter : FilterCases())
        for (const std::size_t input : {0, 1}) {
            const FilterInput& in = FilterInputs()[input];
            const int total = int(filter.plan(in).Do(INT_MAX).size());
            for (const int stop :
                 {0, 1, total / 3, total * 2 / 3, total - 3, total - 2, total - 1, total}) {
                SCOPED_TRACE(testing::Message() << "of " << total << ", input " << input);
                FilterCaller caller;
                CheckRun(filter, in, caller, stop);
            }
        }
}

TEST(FilterFrame, MayBeUsedAgain) {
    QReadWriteLock lock;
    bool flag = false;
    LXSharpenProcessing filter(lock, flag);
    FilterCaller caller;
    caller.Watch(filter);
    LXSharpenProcessing::SharpenData data;
    data.image = RandomImage(3, 2, 1);
    filter.run(data);
    filter.run(data); // the range is not new, and the first step's value is
    EXPECT_EQ(caller.ranges, std::vector<int>{5});
    EXPECT_EQ(caller.values, (std::vector<int>{1, 2, 3, 4, 5, 1, 2, 3, 4, 5}));
    data.image = RandomImage(0, 0, 1);
    filter.run(data);
    EXPECT_EQ(caller.ranges, (std::vector<int>{5, 0}));
    EXPECT_EQ(filter.GetRangeValue(), 5) << "the range does not reset the value";
}

/// Two threads with the lock and flag of one caller; the first stops both half-way.
TEST(FilterFrame, TwoRunsAtOnce) {
    for (const FilterCase& filter : FilterCases())
        for (const bool stops : {false, true}) {
            SCOPED_TRACE(testing::Message() << filter.name << (stops ? ", stopped" : ""));
            const FilterInput& in = FilterInputs()[1];
            const FilterImages images(in);
            const int total = int(filter.plan(in).Do(INT_MAX).size());
            FilterCaller caller;
            FilterCaller other(&caller);
            caller.cancelAt = stops ? total / 2 : INT_MAX;
            FilterResult results[2];
            std::thread thread([&] { results[1] = filter.run(images, other); });
            results[0] = filter.run(images, caller);
            thread.join();
            for (int run = 0; run < 2; ++run) {
                const FilterCaller& listener = run == 0 ? caller : other;
                const auto does = [&](bool silentToo) {
                    const Plan plan = filter.plan(in);
                    return SameRun(results[run], listener, plan,
                                   plan.Do(int(listener.values.size()), silentToo));
                };
                // The other thread may stop this one before or after what it does in silence.
                const bool mayGoOn = stops && run == 1 && !does(false);
                EXPECT_TRUE(does(mayGoOn)) << "run " << run;
                EXPECT_TRUE(stops || int(listener.values.size()) == total);
            }
            EXPECT_TRUE(caller.LocksAreFree());
        }
}

TEST(FilterFrame, RunsOutOfTiles) {
    struct State {
        FilterImages images;
        std::unique_ptr<FilterCaller> caller = std::make_unique<FilterCaller>();
    };
    std::vector<FilterCase> filters{
        {"AddNoise drawn",
         [](const FilterImages& in, FilterCaller& caller) { return RunAddNoise(in, caller, {}); },
         {}}};
    const auto filterOf = [](const FilterCase& c) { return c.name.substr(0, c.name.find(' ')); };
    for (const FilterCase& filter : FilterCases()) // the first one of each
        if (filterOf(filter) != filterOf(filters.back()))
            filters.push_back(filter);
    for (const FilterCase& filter : filters)
        for (const std::size_t input : {0, 1}) {
            SCOPED_TRACE(testing::Message() << filter.name << ", input " << input);
            const FilterInput& in = FilterInputs()[input];
            const auto check = [&](const State& state, const ExhaustionOutcome& outcome) {
                const FilterCaller& caller = *state.caller;
                EXPECT_EQ(outcome.threw, outcome.handlerCalls > 0);
                EXPECT_TRUE(state.caller->LocksAreFree());
                EXPECT_TRUE(outcome.tilesAfter == outcome.tilesBefore ||
                            caller.cachedResult.GetWidth() != 0 ||
                            caller.cachedUniformNoise.GetWidth() != 0)
                    << outcome.tilesBefore << " and " << outcome.tilesAfter << " tiles";
                EXPECT_TRUE(Same(PlaneOf(state.images.image), in.image));
            };
            const unsigned int needed =
                SweepExhaustion([&] { return State{FilterImages(in)}; },
                                [&](State& s) { filter.run(s.images, *s.caller); }, check);
            const bool idle = filter.plan && filter.plan(in).range == 0;
            EXPECT_EQ(needed > 0, !idle);
        }
}
