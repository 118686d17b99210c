<?php
// A drive by sabre/dav: the files of a folder, with locks and the user of QUILLET_USER and QUILLET_PASSWORD.

error_reporting(E_ALL & ~E_DEPRECATED & ~E_WARNING & ~E_NOTICE); // The library is older than the language.
date_default_timezone_set('UTC');
require '/usr/share/php/Sabre/autoload.php';

class OneUser extends Sabre\DAV\Auth\Backend\AbstractBasic
{
    protected function validateUserPass($user, $password)
    {
        return $user === getenv('QUILLET_USER') && $password === getenv('QUILLET_PASSWORD');
    }
}

$folder = getenv('QUILLET_FOLDER');
// In a database, as its deployments have it. Its store in a file reads and writes in two steps, so that a lock is lost
// where two are written at once.
$locks = new PDO('sqlite:' . $folder . '/locks');
$locks->setAttribute(PDO::ATTR_ERRMODE, PDO::ERRMODE_EXCEPTION);
$locks->exec('PRAGMA synchronous = OFF');
$locks->exec('CREATE TABLE IF NOT EXISTS locks (id INTEGER PRIMARY KEY, owner TEXT, timeout INTEGER, created INTEGER,
    token TEXT, scope INTEGER, depth INTEGER, uri TEXT)');
$server = new Sabre\DAV\Server(new Sabre\DAV\FSExt\Directory($folder . '/drive'));
$server->setBaseUri('/');
$server->addPlugin(new Sabre\DAV\Auth\Plugin(new OneUser(), 'drive'));
$server->addPlugin(new Sabre\DAV\Locks\Plugin(new Sabre\DAV\Locks\Backend\PDO($locks)));
$server->exec();
