// quilp-site: a loopback HTTPS server that answers for the services with sample pages.

#include <httplib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <mutex>
#include <thread>

#include "site.h"

namespace {

constexpr size_t kWorkers = 64;  // requests that are served, and delayed, at the same time

void send(const quilp_site::Reply& reply, httplib::Response& response) {
  response.status = reply.status;
  if (reply.challenges) {
    response.set_header("x-amzn-waf-action", "challenge");
  }
  if (reply.status == 302) {
    response.set_redirect(reply.location);
  } else if (reply.closes_half_way) {
    auto half = [body = reply.body](size_t, size_t length, httplib::DataSink& sink) {
      sink.write(body.data(), length / 2);
      return false;
    };
    response.set_content_provider(reply.body.size(), "text/html; charset=utf-8", half);
  } else {
    response.set_content(reply.body, "text/html; charset=utf-8");
  }
}

int run(int argc, char** argv) {
  int port = 8443;
  int delay = 0;
  std::string log_name;
  std::string certificate;
  std::string key;
  CLI::App app("Answers for the services on loopback with sample pages, over HTTPS.");
  app.add_option("--port", port, "Port on 127.0.0.1")->capture_default_str();
  app.add_option("--delay", delay, "Milliseconds that each page takes")->capture_default_str();
  app.add_option("--log", log_name, "File for a line of HOST METHOD PATH?QUERY STATUS a request");
  app.add_option("--certificate", certificate, "PEM file")->required();
  app.add_option("--key", key, "PEM file")->required();
  CLI11_PARSE(app, argc, argv);

  quilp_site::Site site;
  quilp_site::addMovies(site);
  quilp_site::addTV(site);
  quilp_site::addMusic(site);

  httplib::SSLServer server(certificate.c_str(), key.c_str());
  if (!server.is_valid()) {
    std::cerr << "quilp-site: unusable certificate or key\n";
    return 1;
  }
  std::ofstream log_file(log_name);
  std::mutex log_mutex;
  int listener = -1;
  server.new_task_queue = [] { return new httplib::ThreadPool(kWorkers); };
  server.set_keep_alive_max_count(1);
  server.set_socket_options([&](int socket) {
    listener = socket;
    httplib::default_socket_options(socket);
  });
  server.set_pre_routing_handler([&](const httplib::Request& request, httplib::Response& response) {
    std::string host = request.get_header_value("Host");
    host.resize(std::min(host.size(), host.find(':')));
    quilp_site::Reply reply = site.answer({host, request.target, request.path, request.params, ""});
    {
      // Before the reply: who has a page finds its line.
      std::lock_guard<std::mutex> lock(log_mutex);
      log_file << host << ' ' << request.method << ' ' << request.target << ' ' << reply.status
               << std::endl;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(delay));
    send(reply, response);
    return httplib::Server::HandlerResponse::Handled;
  });
  // The library's queue of five waiting connections is too short for a search's threads.
  if (!server.bind_to_port("127.0.0.1", port) || listen(listener, SOMAXCONN) != 0) {
    std::cerr << "quilp-site: port " << port << " is not free\n";
    return 1;
  }
  std::cout << "quilp-site listens on port " << port << std::endl;
  return server.listen_after_bind() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quilp-site: %s\n", error.what());
    return 1;
  }
}
