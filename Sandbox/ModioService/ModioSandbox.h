#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Maptorn::Sandbox
{
struct FSandboxOptions
{
    int Port = 0;        // 0: a free loopback port
    std::string DataDir; // optional: keep state (mods, files, users) there across runs
    int64_t GameId = 1;
    std::string ApiKey = "0123456789abcdef0123456789abcdef";
    bool bSeed = false;
    bool bQuiet = false; // no console lines (security codes, requests)
};

enum class EFaultKind
{
    Status,       // answer with Status and a mod.io-shaped error body
    CloseMidBody, // headers with the full Content-Length, half the body, then the connection drops
    TruncateBody, // the body one byte short of its Content-Length, then the connection closes
    Stall,        // wait DelayMs, then answer normally
    CloseAfter,   // headers with the full Content-Length, the first CutAfterBytes of the body, then the connection drops
    WrongFilehash, // every "filehash.md5" of the JSON answer names other bytes
    ShiftRange    // a ranged download answers the range that begins RangeShift bytes later, saying so in its Content-Range
};

struct FFault
{
    std::string PathPrefix; // matched against the request path, e.g. "/v1/games/1/mods"
    std::string Method;     // empty: any
    int Count = 1;
    EFaultKind Kind = EFaultKind::Status;
    int Status = 500;
    int DelayMs = 0;
    int RetryAfterSeconds = 1; // sent with a 429
    int64_t CutAfterBytes = 0;
    int64_t RangeShift = 0;
};

struct FRecordedRequest
{
    std::string Method;
    std::string Path;
    std::string Query;                          // api_key masked
    std::map<std::string, std::string> Headers; // lower-case names; the bearer token masked
    size_t BodySize = 0;
    int Status = 0;
};

struct FSeededMod
{
    int64_t Id = 0;
    std::string Name;
    std::vector<std::string> Tags;
    bool bSourcePlugin = false;
};

struct FSandboxState;

// A mod.io-compatible service on 127.0.0.1, started in-process by tests and by `maptorn-sandbox`.
class FModioSandbox
{
public:
    explicit FModioSandbox(FSandboxOptions Options);
    ~FModioSandbox();
    FModioSandbox(const FModioSandbox&) = delete;
    FModioSandbox& operator=(const FModioSandbox&) = delete;

    // Listens on 127.0.0.1 and serves on its own threads; returns once ready.
    bool Start(std::string& OutError);
    void Stop();

    int GetPort() const;
    std::string GetBaseUrl() const; // "http://127.0.0.1:<port>"
    const FSandboxOptions& GetOptions() const;

    // The sample users, mods and shared source plug-ins (also done by Start when bSeed). Seeding twice changes nothing.
    void Seed();

    // Test hooks (thread-safe).
    std::string LastCodeFor(const std::string& Email) const;
    std::string IssueTokenFor(const std::string& Email); // a valid bearer token without the e-mail round trip
    void ExpireToken(const std::string& Token);
    void InjectFault(const FFault& Fault);
    std::vector<FRecordedRequest> RequestLog() const;
    void ClearRequestLog();
    // Also accept "<offset>-<size>/<total>" part ranges and answer the complete step with 201.
    void SetAcceptLegacyContentRange(bool bAccept);
    std::vector<FSeededMod> SeededMods() const;
    // The first mod the user owns, or 0.
    int64_t OwnerModIdFor(const std::string& Email) const;
    // Moves the sandbox's clock forward, so that codes and tokens expire without waiting.
    void AdvanceClock(int64_t Seconds);

private:
    std::unique_ptr<FSandboxState> State;
};
}
