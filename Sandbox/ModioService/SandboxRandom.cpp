#include "ModioService/SandboxRandom.h"

#include <mutex>
#include <random>

namespace Maptorn::Sandbox
{
namespace
{
std::mutex GeneratorMutex;

std::mt19937_64& Generator()
{
    static std::mt19937_64 Instance{ std::random_device{}() };
    return Instance;
}
}

std::string RandomText(size_t Length, std::string_view Alphabet)
{
    std::scoped_lock Lock(GeneratorMutex);
    std::uniform_int_distribution<size_t> Pick(0, Alphabet.size() - 1);
    std::string Text;
    for (size_t Index = 0; Index < Length; ++Index)
    {
        Text += Alphabet[Pick(Generator())];
    }
    return Text;
}

std::string NewUuid()
{
    std::string Hex = RandomText(32, "0123456789abcdef");
    Hex[12] = '4';
    Hex[16] = "89ab"[Hex[16] % 4];
    return Hex.substr(0, 8) + "-" + Hex.substr(8, 4) + "-" + Hex.substr(12, 4) + "-" + Hex.substr(16, 4) + "-" + Hex.substr(20);
}
}
