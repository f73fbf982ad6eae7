// The component in several threads: with objects of their own, and with one of another thread.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>

#include "com/pairs.h"

using namespace com_client;

namespace {

/// A thread that is an apartment of its own.
std::thread Apartment(auto work) {
    return std::thread([work] {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        work();
        CoUninitialize();
    });
}

}  // namespace

TEST(Threads, FitWithObjectsOfTheirOwn) {
    std::array<std::array<double, 2>, 4> results{};
    std::vector<std::thread> threads;
    for (auto& result : results) {
        threads.push_back(Apartment([&result] {
            const auto engine = NewEngine();
            SAFEARRAY* records = RecordsOf(Points());
            for (int i = 0; i < 20; ++i) {
                engine->AddXY4Tr(&records, VARIANT_FALSE);
                engine->put_eTrType(::TR_POLI_2);
                CallMethod(engine.Get(), L"DoCalcTr");
            }
            SafeArrayDestroy(records);
            engine->TrXY(600123, 200456, &result[0], &result[1]);
        }));
    }
    for (std::thread& thread : threads) thread.join();
    for (const auto& result : results) EXPECT_EQ(result, results[0]);
    EXPECT_NE(results[0][0], 0);
}

TEST(Threads, CallAnObjectOfAnotherThread) {
    const auto tr = NewTr();
    ::AFFIN_PRM six{::TR_AFFIN, 11, 2, 3, -5, 13, 7};
    tr->put_udtTrAffinPrm(&six);
    ComPtr<IStream> stream;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID__clsTr, tr.Get(), &stream), S_OK);
    std::atomic<bool> done = false;
    double x = 0, y = 0;
    HRESULT found = E_FAIL, called = E_FAIL;
    IStream* const given = stream.Get();
    given->AddRef();  // the thread gives that back
    std::thread thread = Apartment([&] {
        ComPtr<_clsTr> other;
        found = CoGetInterfaceAndReleaseStream(given, IID__clsTr,
                                               reinterpret_cast<void**>(other.GetAddressOf()));
        if (other) called = other->TrXY(1, 2, &x, &y);
        other.Reset();
        done = true;
    });
    MSG message;
    while (!done) {  // an apartment is called through its messages
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        Sleep(1);
    }
    thread.join();
    EXPECT_EQ(found, S_OK);
    EXPECT_EQ(called, S_OK);
    EXPECT_EQ(x, 11 + 2 * 1 + 3 * 2);
    EXPECT_EQ(y, 13 - 5 * 1 + 7 * 2);
}
