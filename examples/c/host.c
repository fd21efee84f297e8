/* A host application in C: an inquiry and an order for one card record of one person. */
#include <kartix/automation.h>

#include <stdio.h>

/* Words for a call that was refused; gives the status to end with. */
static int refused(const char *what) {
  fprintf(stderr, "%s: %s\n", what, kartix_error_text());
  return 1;
}

/* Calls an operation: 0 when it was carried out. */
static int carry_out(kartix_object kartix, const char *operation, const char *record) {
  kartix_value argument = kartix_text(record), result;
  int32_t number;
  const char *text;
  if (kartix_call(kartix, operation, &argument, 1, &result) != KARTIX_OK) return refused(operation);
  if (result.as.integer == 1) return 0;
  if (kartix_last_error(&number, &text) != KARTIX_OK) return refused(operation);
  fprintf(stderr, "%s: %lld: (%d) %s\n", operation, (long long)result.as.integer, (int)number, text);
  return 1;
}

static int work(kartix_object kartix, char *arguments[]) {
  kartix_value session[2], result;
  session[0] = kartix_text(arguments[1]);
  session[1] = kartix_text(arguments[2]);
  if (kartix_call(kartix, "init", session, 2, &result) != KARTIX_OK) return refused("init");
  if (!result.as.boolean) {
    fputs("init: False\n", stderr);
    return 1;
  }
  if (carry_out(kartix, "ZKRAnfrage", arguments[3]) != 0) return 1;
  if (kartix_get(kartix, "kartennr", &result) != KARTIX_OK) return refused("kartennr");
  printf("found %s", result.as.text);
  if (kartix_get(kartix, "gueltigbis", &result) != KARTIX_OK) return refused("gueltigbis");
  printf(", valid until %s\n", result.as.text);
  if (carry_out(kartix, "FahrerKartenBestellung", arguments[3]) != 0) return 1;
  if (kartix_get(kartix, "kartennr", &result) != KARTIX_OK) return refused("kartennr");
  printf("ordered %s\n", result.as.text);
  return 0;
}

int main(int argc, char *argv[]) {
  kartix_object kartix;
  int status;
  if (argc != 4) {
    fputs("usage: host CLERK PERSON CARD-RECORD\n", stderr);
    return 2;
  }
  if (kartix_use_gateway_objects() != KARTIX_OK) return refused("gateway objects");
  if (kartix_create("Kartix", &kartix) != KARTIX_OK) return refused("Kartix");
  status = work(kartix, argv);
  kartix_release(kartix);
  return status;
}
