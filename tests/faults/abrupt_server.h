#pragma once

#include "tests/faults/faulty_server.h"
#include "tests/support/loopback_port.h"

#include <atomic>
#include <thread>

namespace faults {

/// Takes connections, reads so many bytes of what comes, and ends them. [any-thread]
class AbruptServer : public FaultyServer {
public:
    enum class End {
        close,
        reset,
    };

    AbruptServer(int bytesToRead, End howItEnds);
    ~AbruptServer() override;
    Q_DISABLE_COPY_MOVE(AbruptServer)

    [[nodiscard]] QUrl url() const override;

private:
    void serve() const;

    int bytes;
    End end;
    vantiro_test::LoopbackPort port { vantiro_test::LoopbackPort::Kind::listening };
    std::atomic<bool> stopping = false;
    std::thread thread;
};

}
