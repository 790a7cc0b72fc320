/* Looks up a movie within two seconds, and says why where there is none: lookup WORDS */
#include <quilp.h>
#include <stdio.h>

int main(int argc, char** argv) {
  quilp_request* request = quilp_request_new(QUILP_MOVIE_SEARCH);
  quilp_answer* answer;
  size_t i;
  int found;
  if (argc != 2 || request == NULL ||
      quilp_request_set_text(request, QUILP_KEYWORD, argv[1]) != 0 ||
      quilp_request_set_number(request, QUILP_DEADLINE, 2000) != 0) {
    quilp_request_free(request);
    return 2;
  }
  answer = quilp_run(request);
  for (i = 0; i < quilp_answer_count(answer); ++i) {
    const char* title = quilp_answer_text(answer, i, "title");
    const char* year = quilp_answer_text(answer, i, "year");
    printf("%s (%s)\n", title != NULL ? title : "?", year != NULL ? year : "?");
  }
  found = quilp_answer_reason(answer) == QUILP_OK;
  if (!found) {
    fprintf(stderr, "%s\n", quilp_answer_sentence(answer));
  }
  quilp_answer_free(answer);
  quilp_request_free(request);
  return found ? 0 : 1;
}
