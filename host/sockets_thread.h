// The thread that owns the sockets: it reads requests, answers what needs no library, and hands the
// rest to the thread of the library.
#ifndef HOST_SOCKETS_THREAD_H
#define HOST_SOCKETS_THREAD_H

#include <pthread.h>

#include "clients.h"
#include "http_server.h"
#include "library_desk.h"
#include "listener.h"
#include "status.h"

namespace kiohost {

class SocketsThread {
 public:
  // The server and the clients belong to the thread as long as it runs, and to the caller
  // otherwise. The clients may be null: nobody logs in.
  SocketsThread(HttpServer* server, Clients* clients, LibraryDesk* desk)
      : server_(server), clients_(clients), desk_(desk) {}
  ~SocketsThread() { Stop(); }
  SocketsThread(const SocketsThread&) = delete;
  SocketsThread& operator=(const SocketsThread&) = delete;

  // Serves the connections of a listening socket.
  Status Start(FileDescriptor listener);

  // Sends the answers that are there, closes all sockets and ends the thread. Work that was put on
  // the desk and not begun is forgotten, but for that after a reply.
  void Stop();

 private:
  static void* Run(void* self);
  void Serve();
  LibraryDesk::News WaitAndServe(bool waits);

  HttpServer* server_;
  Clients* clients_;
  LibraryDesk* desk_;
  pthread_t thread_ = {};
  bool runs_ = false;
};

}  // namespace kiohost

#endif  // HOST_SOCKETS_THREAD_H
