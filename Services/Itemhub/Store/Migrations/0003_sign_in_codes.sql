-- What a browser that has signed somebody in hands to the program that asked for it.
CREATE TABLE sign_in_code (
    hash VARCHAR(64) NOT NULL PRIMARY KEY,
    account_id BIGINT NOT NULL REFERENCES account (id),
    client VARCHAR(64) NOT NULL,
    redirect VARCHAR(255) NOT NULL,
    challenge VARCHAR(64) NOT NULL,
    expires_at BIGINT NOT NULL
);
