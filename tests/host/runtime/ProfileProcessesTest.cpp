// The profile store shared by several processes: what one writes another reads,
// concurrent writers lose nothing, and a writer killed at any moment leaves a
// store that loads whole and consistent.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cwchar>
#include <functional>
#include <random>

#include "ProfileTestSupport.h"

namespace korva::test {
namespace {

constexpr const wchar_t* kSharedKey = L"Software\\Korva\\R1\\Shared";

// Runs `body` in a child process that ends with its result (no test assertions there).
pid_t runChild(const std::function<int()>& body) {
    std::fflush(stdout);
    std::fflush(stderr);
    const pid_t pid = ::fork();
    if (pid == 0) ::_exit(body());
    return pid;
}

// The child's exit status, or -1 when it did not exit by itself.
int exitStatusOf(pid_t pid) {
    int status = 0;
    if (::waitpid(pid, &status, 0) != pid) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

HKEY openShared() {
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, kSharedKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    return key;
}

TEST(ProfileProcesses, WhatOneProcessWritesAnotherReads) {
    ProfileFolder profile;
    HKEY key = createKey(kSharedKey);
    ASSERT_EQ(setDword(key, L"Counter", 1), ERROR_SUCCESS);
    int gate[2];
    ASSERT_EQ(::pipe(gate), 0);

    const pid_t writer = runChild([] {
        HKEY shared = openShared();
        if (setDword(shared, L"Counter", 7) != ERROR_SUCCESS) return 2;
        return setText(shared, L"Text", L"from the child") == ERROR_SUCCESS ? 0 : 3;
    });
    ASSERT_EQ(exitStatusOf(writer), 0);
    EXPECT_EQ(queryDword(key, L"Counter"), 7u);
    EXPECT_EQ(queryText(key, L"Text"), L"from the child");

    // The other way round: a running process sees the value written after it started.
    const pid_t reader = runChild([&] {
        ::close(gate[1]);
        char signal = 0;
        if (::read(gate[0], &signal, 1) != 1) return 2;
        return queryDword(openShared(), L"Counter") == 9u ? 0 : 3;
    });
    ::close(gate[0]);
    ASSERT_EQ(setDword(key, L"Counter", 9), ERROR_SUCCESS);
    ASSERT_EQ(::write(gate[1], "x", 1), 1);
    ::close(gate[1]);
    EXPECT_EQ(exitStatusOf(reader), 0);
    RegCloseKey(key);
}

TEST(ProfileProcesses, TwoProcessesWritingAtOnceLoseNothing) {
    ProfileFolder profile;
    RegCloseKey(createKey(kSharedKey));
    constexpr int kValuesEach = 40;
    int gate[2];
    ASSERT_EQ(::pipe(gate), 0);
    std::vector<pid_t> writers;
    for (const wchar_t letter : {L'A', L'B'}) {
        writers.push_back(runChild([&, letter] {
            ::close(gate[1]);
            char signal = 0;
            if (::read(gate[0], &signal, 1) != 0) return 2;  // starts when the gate closes
            HKEY shared = openShared();
            for (int i = 0; i < kValuesEach; ++i) {
                const std::wstring name = std::wstring(1, letter) + std::to_wstring(i);
                if (setDword(shared, name.c_str(), static_cast<DWORD>(i)) != ERROR_SUCCESS) return 3;
            }
            return 0;
        }));
    }
    ::close(gate[0]);
    ::close(gate[1]);
    for (const pid_t writer : writers) EXPECT_EQ(exitStatusOf(writer), 0);

    HKEY key = createKey(kSharedKey, KEY_READ);
    int found = 0;
    for (const wchar_t letter : {L'A', L'B'}) {
        for (int i = 0; i < kValuesEach; ++i) {
            const std::wstring name = std::wstring(1, letter) + std::to_wstring(i);
            found += queryDword(key, name.c_str()) == static_cast<DWORD>(i) ? 1 : 0;
        }
    }
    EXPECT_EQ(found, 2 * kValuesEach);
    EXPECT_TRUE(problemsOfFile(profile.storeFile()).empty());
    RegCloseKey(key);
}

// A payload that shows whether it was written whole: `sequence` repeated.
std::wstring payloadOf(DWORD sequence) {
    std::wstring payload;
    for (int i = 0; i < 2000; ++i) payload += std::to_wstring(sequence) + L"\u00e9;";
    return payload;
}

// The writer the test kills: the payload, then the counter, again and again.
int writeForever() {
    HKEY shared = openShared();
    DWORD sequence = queryDword(shared, L"Counter").value_or(0);
    while (true) {
        ++sequence;
        if (setText(shared, L"Payload", payloadOf(sequence)) != ERROR_SUCCESS) return 2;
        if (setDword(shared, L"Counter", sequence) != ERROR_SUCCESS) return 3;
    }
}

constexpr int kProgressTimeoutSeconds = 20;

// Waits until the store's counter, as this process reads it, exceeds `value`.
bool waitForCounterAbove(DWORD value) {
    HKEY key = openShared();
    bool above = false;
    for (int waited = 0; !above && waited < kProgressTimeoutSeconds * 1000; ++waited) {
        above = queryDword(key, L"Counter").value_or(0) > value;
        if (!above) ::usleep(1000);
    }
    RegCloseKey(key);
    return above;
}

TEST(ProfileProcesses, AWriterKilledAtAnyMomentLeavesAConsistentStore) {
    ProfileFolder profile(false);
    RegCloseKey(createKey(kSharedKey));
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> delayMicroseconds(0, 20000);
    DWORD lastCounter = 0;
    for (int round = 0; round < 30; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const pid_t writer = runChild(writeForever);
        // Kill at a random moment after the writer has finished at least one write,
        // whatever the speed of the disk.
        const bool progressed = waitForCounterAbove(lastCounter);
        ::usleep(static_cast<useconds_t>(delayMicroseconds(random)));
        ::kill(writer, SIGKILL);
        ASSERT_TRUE(progressed) << "the writer saved nothing within " << kProgressTimeoutSeconds << " s";
        ASSERT_EQ(exitStatusOf(writer), -1) << "the writer stopped by itself";

        const std::string text = readFileBytes(profile.storeFile());
        std::vector<runtime::RegistryTextProblem> problems;
        const runtime::RegistryTree tree = runtime::readRegistryText(text, problems);
        ASSERT_TRUE(problems.empty()) << problems.front().line << ": " << problems.front().message;
        const runtime::RegistryKey* shared = tree.findKey({L"Software", L"Korva", L"R1", L"Shared"});
        ASSERT_NE(shared, nullptr);
        const runtime::RegistryValue* counterValue = shared->findValue(L"Counter");
        const runtime::RegistryValue* payloadValue = shared->findValue(L"Payload");
        DWORD counter = 0;
        if (counterValue) {
            ASSERT_EQ(counterValue->data.size(), sizeof counter);
            std::memcpy(&counter, counterValue->data.data(), sizeof counter);
        }
        if (payloadValue) {
            std::wstring payload(payloadValue->data.size() / sizeof(wchar_t), L'\0');
            std::memcpy(payload.data(), payloadValue->data.data(), payload.size() * sizeof(wchar_t));
            ASSERT_FALSE(payload.empty());
            payload.pop_back();
            // Whole, and written just before its counter.
            const DWORD payloadSequence = static_cast<DWORD>(std::wcstoul(payload.c_str(), nullptr, 10));
            EXPECT_EQ(payload, payloadOf(payloadSequence));
            EXPECT_TRUE(counter == payloadSequence || counter + 1 == payloadSequence) << counter << " " << payloadSequence;
        } else {
            EXPECT_EQ(counterValue, nullptr);
        }
        EXPECT_GE(counter, lastCounter);
        lastCounter = counter;
        // The surviving process sees the same store through the registry functions.
        HKEY key = createKey(kSharedKey, KEY_READ);
        EXPECT_EQ(queryDword(key, L"Counter"), counterValue ? std::optional<DWORD>(counter) : std::nullopt);
        RegCloseKey(key);
    }
    for (const std::string& name : fileNamesIn(profile.folder())) EXPECT_FALSE(name.find("damaged") != std::string::npos) << name;

    HKEY key = createKey(kSharedKey);
    ASSERT_EQ(setDword(key, L"Counter", 0), ERROR_SUCCESS);
    RegCloseKey(key);
    for (const std::string& name : fileNamesIn(profile.folder())) EXPECT_EQ(name.find(".tmp-"), std::string::npos) << name;
}

}  // namespace
}  // namespace korva::test
