#include "Simulator.h"

#include "OutputText.h"
#include "interception/EventCapturer.h"
#include "interception/EventTapManager.h"
#include "interception/KeyRecordingSession.h"
#include "model/MappingJson.h"
#include "platform/Diagnostics.h"
#include "platform/sim/SharedPlatform.h"
#include "store/MappingStore.h"

#include <QCoreApplication>
#include <QTemporaryDir>

namespace orvane::sim {
namespace {

void print(const std::string& line) { diagnostics::printLine(line); }

class Simulation {
public:
    Simulation(const Options& options, const std::string& storedMappings, bool hasStoredMappings)
        : options_(options), defaults_(UserDefaults::openFile(settingsDir_.filePath(QStringLiteral("settings.ini")))) {
        simAccessibility().setTrusted(!options.untrusted);
        if (hasStoredMappings)
            defaults_->setData(MappingStore::userDefaultsKey, QByteArray(storedMappings.data(), static_cast<qsizetype>(storedMappings.size())));
        if (options.capsHid != Options::CapsHid::none) {
            defaults_->setBool(MappingStore::hidRemapKey, true);
            defaults_->setBool(MappingStore::hidRemapTypeKey, options.capsHid == Options::CapsHid::direct);
        }
        simEventSystem().setOutput([this](const PlatformEvent& event) { delivered_.push_back(event); });
    }

    ~Simulation() {
        // Leave the tap running and the HID layer as it is: only our objects go.
        capturer_.reset();
        recording_.reset();
        EventTapManager::installShared(nullptr);
        MappingStore::installShared(nullptr);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        simEventSystem().setOutput(nullptr);
        diagnostics::holdBackgroundLines(false);
        diagnostics::releaseHeld();
    }

    int run(const std::vector<ScriptItem>& script) {
        // Background lines wait for the points below, so they land at the same place every run.
        diagnostics::holdBackgroundLines(true);
        MappingStore::installShared(std::make_unique<MappingStore>(*defaults_, HIDUtil(QString::fromStdString(options_.hidutil))));
        settle();
        if (options_.printMappings) {
            print(encodeMappings(store().mappings()));
            return 0;
        }
        EventTapManager::installShared(std::make_unique<EventTapManager>(simEventSystem(), store()));
        if (!options_.untrusted) {
            manager().start();
            settle();
        }
        if (options_.capture) {
            capturer_ = std::make_unique<EventCapturer>(
                simEventSystem(), store(), manager(), [](const DebugEvent& record) { print(describeCapture(record)); },
                [filter = options_.filterNoise] { return filter; });
            capturer_->start();
        }
        recording_ = std::make_unique<KeyRecordingSession>(simEventSystem(), manager());
        QObject::connect(recording_.get(), &KeyRecordingSession::keyRecorded,
                         [](const RecordedKey& key) { print("recorded: " + key.label()); });
        for (const ScriptItem& item : script) {
            perform(item);
            settle();
        }
        return 0;
    }

private:
    MappingStore& store() { return MappingStore::shared(); }
    EventTapManager& manager() { return EventTapManager::shared(); }

    void perform(const ScriptItem& item) {
        switch (item.kind) {
        case ScriptItem::Kind::event: {
            delivered_.clear();
            PlatformEvent event = item.event;
            event.timestamp = now_;
            simEventSystem().inject(event);
            print(std::to_string(item.lineNumber) + ": " + describeDelivered(delivered_));
            break;
        }
        case ScriptItem::Kind::wait: now_ += static_cast<std::uint64_t>(item.milliseconds) * 1'000'000; break;
        case ScriptItem::Kind::tapDisabledByTimeout:
        case ScriptItem::Kind::tapDisabledByUserInput:
            if (manager().eventTap())
                simEventSystem().disableBySystem(manager().eventTap(), item.kind == ScriptItem::Kind::tapDisabledByTimeout
                                                                           ? TapEventType::tapDisabledByTimeout
                                                                           : TapEventType::tapDisabledByUserInput);
            break;
        case ScriptItem::Kind::stop: manager().stop(); break;
        case ScriptItem::Kind::start: manager().start(); break;
        case ScriptItem::Kind::record:
        case ScriptItem::Kind::recordWithModifiers:
            if (recording_->isRecording()) break;
            recording_->setAllowModifiers(item.kind == ScriptItem::Kind::recordWithModifiers);
            recording_->startRecording();
            break;
        case ScriptItem::Kind::cancel:
            if (recording_->isRecording()) recording_->stopRecording();
            break;
        }
    }

    // Runs deferred main-thread work and waits for queued Caps Lock decisions, a few rounds deep:
    // a recorded key restarts the main tap, which queues a decision, whose result comes back here.
    void settle() {
        for (int round = 0; round < 4; ++round) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
            store().waitForCapsLockDecisions();
            diagnostics::releaseHeld();
        }
    }

    const Options& options_;
    QTemporaryDir settingsDir_;
    std::unique_ptr<UserDefaults> defaults_;
    std::vector<PlatformEvent> delivered_;
    // Virtual time: events happen at no time, a wait moves it on. Starts where no real clock is zero.
    std::uint64_t now_ = 1'000'000'000;
    std::unique_ptr<EventCapturer> capturer_;
    std::unique_ptr<KeyRecordingSession> recording_;
};

}  // namespace

int runSimulation(const Options& options, const std::string& storedMappings, bool hasStoredMappings,
                  const std::vector<ScriptItem>& script) {
    Simulation simulation(options, storedMappings, hasStoredMappings);
    return simulation.run(script);
}

}  // namespace orvane::sim
